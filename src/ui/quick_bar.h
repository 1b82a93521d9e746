#pragma once

#include "forms/frm_quick_buttons.h"
#include "ui/bar_window.h"

class QLabel;
class QPushButton;

namespace Corvetape {

/// The plain floating bar: what plays, and the commands of the recording page.
class QuickBarWindow : public BarWindow {
 public:
    QuickBarWindow(const UiParts& parts, frmQuickButtons& form, BarStyle style);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    QWidget* Buttons();
    void Refresh();

    frmQuickButtons& Form;
    QLabel* Symbol = nullptr;
    QLabel* Age = nullptr;
    QLabel* Title = nullptr;
    QPushButton* StartStop = nullptr;
};

}  // namespace Corvetape
