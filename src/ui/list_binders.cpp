// The binders of lists. They work on models, so that a list of a hundred thousand entries costs nothing.
#include <QAbstractListModel>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QListView>
#include <QSignalBlocker>
#include <algorithm>
#include <vector>

#include "ui/binders.h"
#include "ui/binding.h"
#include "ui/make.h"

namespace Corvetape {

namespace {

bool SameTexts(const std::vector<ListItem>& items, const std::vector<std::string>& texts) {
    return std::ranges::equal(items, texts, {}, &ListItem::Text);
}

/// The texts of a list as they are shown.
class ItemsModel : public QAbstractListModel {
 public:
    using QAbstractListModel::QAbstractListModel;

    /// True if it had to be filled anew.
    bool Show(const std::vector<ListItem>& items) {
        if (SameTexts(items, Texts)) return false;
        beginResetModel();
        Texts.clear();
        Texts.reserve(items.size());
        for (const ListItem& item : items) Texts.push_back(item.Text);
        endResetModel();
        return true;
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(Texts.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid() || role != Qt::DisplayRole) return {};
        return QString::fromStdString(Texts.at(static_cast<size_t>(index.row())));
    }

 private:
    std::vector<std::string> Texts;
};

QListView* NewView() {
    auto* const view = Make<QListView>();
    view->setUniformItemSizes(true);
    view->setEditTriggers(QListView::NoEditTriggers);
    view->setModel(Make<ItemsModel>(view));
    return view;
}

void ShowItems(const ListBox& control, QListView& view) {
    auto& model = static_cast<ItemsModel&>(*view.model());
    const QSignalBlocker quiet(view.selectionModel());
    model.Show(control.Items());
    if (!control.Caption().empty()) view.setAccessibleName(QString::fromStdString(control.Caption()));
}

void FollowReveal(ListBox& control, QListView* view) {
    control.Revealed.Connect([kept = QPointer<QListView>(view)](int32_t index) {
        if (kept) kept->scrollTo(kept->model()->index(index, 0));
    });
}

std::vector<int32_t> SelectedRows(const QListView& view) {
    std::vector<int32_t> rows;
    for (const QModelIndex& index : view.selectionModel()->selectedIndexes()) rows.push_back(index.row());
    return rows;
}

/// Neighbours as one range: a hundred thousand ranges of one row each would take minutes.
void SelectRows(const std::vector<ListItem>& items, QListView& view) {
    const auto indexOf = [&view](auto place) { return view.model()->index(static_cast<int>(place), 0); };
    QItemSelection selection;
    auto end = items.begin();
    while (true) {
        const auto first = std::ranges::find(end, items.end(), true, &ListItem::Selected);
        if (first == items.end()) break;
        end = std::ranges::find(first, items.end(), false, &ListItem::Selected);
        selection.emplace_back(indexOf(first - items.begin()), indexOf(end - items.begin() - 1));
    }
    view.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

}  // namespace

QComboBox* BoundTo(ComboBox& control) {
    return BoundToChoice(control);
}

QComboBox* BoundToChoice(ListBox& control) {
    auto* const widget = Make<QComboBox>();
    widget->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    widget->setMinimumContentsLength(4);
    widget->setModel(Make<ItemsModel>(widget));
    LeaveWheelToPage(*widget);
    QObject::connect(widget, &QComboBox::activated, [widget, &control](int index) {
        control.ListIndex(index);
        widget->setCurrentIndex(control.ListIndex());
    });
    Follow(control, widget, [](const ListBox& from, QComboBox& to) {
        const QSignalBlocker quiet(to);
        static_cast<ItemsModel&>(*to.model()).Show(from.Items());
        to.setCurrentIndex(from.ListIndex());
        if (!from.Caption().empty()) to.setAccessibleName(QString::fromStdString(from.Caption()));
    });
    return widget;
}

QListView* BoundTo(ListBox& control) {
    QListView* const view = NewView();
    QObject::connect(view->selectionModel(), &QItemSelectionModel::currentChanged,
                     [&control](const QModelIndex& index) { control.ListIndex(index.row()); });
    Follow(control, view, [](const ListBox& from, QListView& to) {
        ShowItems(from, to);
        const QSignalBlocker quiet(to.selectionModel());
        const QModelIndex index = to.model()->index(from.ListIndex(), 0);
        to.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        to.viewport()->update();
    });
    FollowReveal(control, view);
    return view;
}

QListView* BoundTo(MultiListBox& control) {
    QListView* const view = NewView();
    view->setSelectionMode(QListView::ExtendedSelection);
    QObject::connect(view->selectionModel(), &QItemSelectionModel::selectionChanged,
                     [view, &control] { control.SelectExactly(SelectedRows(*view)); });
    QObject::connect(view->selectionModel(), &QItemSelectionModel::currentChanged,
                     [view, &control](const QModelIndex& index) {
                         control.Selected(index.row(), view->selectionModel()->isSelected(index));
                     });
    Follow(control, view, [](const MultiListBox& from, QListView& to) {
        ShowItems(from, to);
        const QSignalBlocker quiet(to.selectionModel());
        SelectRows(from.Items(), to);
        to.viewport()->update();
    });
    FollowReveal(control, view);
    return view;
}

}  // namespace Corvetape
