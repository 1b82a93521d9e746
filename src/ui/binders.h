#pragma once

#include "core/controls/controls.h"

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QSlider;
class QWidget;

namespace Corvetape {

class ShownText;

// One binder for each kind of control. Each makes the widget of a control and keeps the two alike: what the
// user does goes to the control, and whatever changes the control, whoever did it, shows in the widget. The
// object name of the widget is the name of the control, for members of an array with "_" and the index after
// it. The caller gives the widget to a layout; the control outlives it.

/// Buttons and labels show the caption of their control, "&" before the letter of its key.
QCheckBox* BoundTo(CheckBox& control);
QRadioButton* BoundTo(OptionButton& control);
QPushButton* BoundTo(CommandButton& control);

/// A button that shows an icon instead of its caption, which becomes its name for those who cannot see it,
/// and its tool tip where it has none. The caller gives it the icon.
QPushButton* BoundToIcon(CommandButton& control);
QLabel* BoundTo(Label& control);

/// A line that ends in an ellipsis where there is no room.
QLabel* BoundToElided(Label& control);

/// A text that does something when it is clicked, with the pointer or by the keyboard.
QPushButton* BoundToLink(Label& control);
QPushButton* BoundToLink(TextBox& control);

/// One line. It is validated when it is left; a refused input keeps the focus and is marked.
QLineEdit* BoundTo(TextBox& control);

/// Leaves the line that the keyboard is in, if it is in one. False if its input was refused; it keeps the
/// keyboard then.
bool LeaveField();

/// Several lines that are only read.
QPlainTextEdit* BoundToLines(TextBox& control);

/// A text that the program shows and the user may copy.
ShownText* BoundToShown(TextBox& control);

/// Lists keep the place where they are scrolled to, unless the control asks for an entry to be seen.
QComboBox* BoundTo(ComboBox& control);
QListView* BoundTo(ListBox& control);

/// A list of few entries, as one that opens.
QComboBox* BoundToChoice(ListBox& control);

/// A list of which any number of entries can be selected.
QListView* BoundTo(MultiListBox& control);

/// Horizontal; a scroll bar of the program runs from the right to the left like its numbers.
QSlider* BoundTo(Slider& control);

/// The caption of a control that shows none itself, such as a text box. `buddy` gets the focus by its
/// mnemonic.
QLabel* CaptionOf(Control& control, QWidget* buddy);

}  // namespace Corvetape
