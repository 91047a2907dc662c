#include "settings/model/PageModel.h"

#include "platform/preferences/PSSpecifier.h"

#include <algorithm>
#include <utility>

namespace settings {
namespace {

/// Each snapshot has views of its own, but their contents seldom change.
bool isSame(const std::shared_ptr<const ViewSnapshot>& one, const std::shared_ptr<const ViewSnapshot>& other) {
    return one && other ? *one == *other : one == other;
}

/// From top to bottom, and from left to right in a line.
std::vector<ElementSnapshot> inReadingOrder(std::vector<ElementSnapshot> elements) {
    std::ranges::stable_sort(elements, {}, [](const ElementSnapshot& element) {
        return std::pair(element.frame.origin.y, element.frame.origin.x);
    });
    return elements;
}

} // namespace

PageModel::PageModel(SendEvent send, std::shared_ptr<const PageSnapshot> page, QObject* parent)
    : QObject(parent), send_(std::move(send)), page_(std::move(page)) {
    makeGroups();
    readParts();
}

QSizeF PageModel::viewSize() const {
    return page_->view ? QSizeF(page_->view->frame.size.width, page_->view->frame.size.height) : QSizeF();
}

void PageModel::read(std::shared_ptr<const PageSnapshot> page) {
    if (page == page_) return;
    const bool sameRows = std::ranges::equal(rows_, page->rows, &RowModel::isSameRow);
    const bool sameTitle = page->title == page_->title;
    const bool sameView = isSame(page->view, page_->view) && page->hostsView == page_->hostsView;
    page_ = std::move(page);
    if (!sameTitle) emit titleChanged();
    if (!sameView) emit viewChanged();
    readParts();
    if (!sameRows) return makeGroups();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        rows_[i]->read(page_->rows[i], isChanged(*page_, i));
}

void PageModel::readParts() {
    readPart(table_, page_->table, send_);
    readPart(text_, page_->text);
    readElements();
    readPart(composer_, page_->composer, send_);
}

/// Takes up what a page has one of, or none. The model lives on while that is the same one.
template<class Model, class Part, class... Context>
void PageModel::readPart(Model*& model, const std::shared_ptr<const Part>& part, const Context&... context) {
    if (model && part && model->id() == part->id) return model->read(part);
    if (!model && !part) return;
    if (model) model->deleteLater();
    model = part ? new Model(context..., part, this) : nullptr;
    emit partsChanged();
}

void PageModel::readElements() {
    const std::vector<ElementSnapshot> elements = inReadingOrder(page_->elements);
    if (std::ranges::equal(elements_, elements, &ElementModel::isSameElement)) {
        for (std::size_t i = 0; i < elements.size(); ++i)
            elements_[qsizetype(i)]->read(elements[i]);
        return;
    }
    const QList<ElementModel*> former = std::exchange(elements_, {});
    for (const ElementSnapshot& element : elements)
        elements_.push_back(new ElementModel(send_, element, this));
    emit elementsChanged();
    for (ElementModel* old : former)
        old->deleteLater();
}

void PageModel::setOpenRow(std::optional<std::size_t> row) {
    open_ = row;
    for (std::size_t i = 0; i < rows_.size(); ++i)
        rows_[i]->setOpen(i == row);
}

void PageModel::touch(const std::vector<platform::UITouchRouter::Point>& points) {
    send_(Touched{points}, {});
}

void PageModel::makeGroups() {
    const QList<GroupModel*> former = std::exchange(groups_, {});
    rows_.clear();
    GroupModel* group = nullptr;
    RowModel::Surroundings around;
    for (std::size_t i = 0; i < page_->rows.size(); ++i) {
        const RowSnapshot& row = page_->rows[i];
        const bool begins = row.cell == platform::PSGroupCell;
        if (begins || !group) {
            group = new GroupModel(this);
            groups_.push_back(group);
            if (begins) {
                group->header = QString::fromStdString(row.name);
                group->footer = QString::fromStdString(row.footerText);
            }
            around = {group->header, group->footer, {}};
        }
        auto* model = new RowModel(send_, i, row, around, group);
        model->read(row, isChanged(*page_, i));
        const QString identifier = QString::fromStdString(row.identifier);
        connect(model, &RowModel::begun, this, &PageModel::begun);
        connect(model, &RowModel::held, this, [this, identifier](double number) { emit held(identifier, number); });
        connect(model, &RowModel::released, this, [this, identifier] { emit released(identifier); });
        rows_.push_back(model);
        if (row.cell == platform::PSStaticTextCell) around.textAbove = QString::fromStdString(row.name);
        if (!begins) group->rows.push_back(rows_.back());
    }
    setOpenRow(open_);
    emit groupsChanged();
    for (GroupModel* old : former)
        old->deleteLater(); // its delegates may be in the middle of an event
}

} // namespace settings
