#include "SettingsPages.h"
#include "FieldEditor.h"
#include "words.h"

#include <QBoxLayout>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QScrollArea>
#include <QSet>
#include <QStackedWidget>
#include <QStyle>

#include <algorithm>

using Model::Field;
using Model::QueueSettings;

namespace {

/// The list of pages is as wide as the widest name.
void fitWidth(QListWidget &list)
{
    const int frame = 2 * list.frameWidth();
    list.setFixedWidth(list.sizeHintForColumn(0) + frame +
                       2 * list.fontMetrics().averageCharWidth());
}

QLabel *heading(const QString &words, QWidget *parent)
{
    auto *label = new QLabel(words, parent);
    label->setTextFormat(Qt::PlainText);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    label->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred); // stands where lines begin
    return label;
}

} // namespace

SettingsPages::SettingsPages(QWidget *parent)
    : QWidget(parent), _names(new QListWidget(this)), _stack(new QStackedWidget(this))
{
    _names->setAccessibleName(tr("Pages of settings"));
    _names->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _names->setSpacing(2);
    const int icon = style()->pixelMetric(QStyle::PM_SmallIconSize);
    _names->setIconSize({icon, icon});
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(_names);
    layout->addWidget(_stack, 1);
    connect(_names, &QListWidget::currentRowChanged, _stack, &QStackedWidget::setCurrentIndex);
    // Screen readers select without moving the cursor.
    connect(_names, &QListWidget::itemSelectionChanged, this, [this] {
        if (const auto selected = _names->selectedItems(); !selected.isEmpty())
            _names->setCurrentItem(selected.front());
    });
}

void SettingsPages::show(const QueueSettings &settings)
{
    const auto pages = pagesOf(settings);
    if (!fits(pages))
        build(pages);

    QHash<QString, QString> problems;
    for (const Model::Problem &problem : settings.problems())
        problems.insert(fromModel(problem.field), inWords(problem.words));
    for (std::size_t page = 0; page < pages.size(); ++page)
        for (std::size_t index = 0; index < pages[page].fields.size(); ++index) {
            const Field &field = pages[page].fields[index];
            FieldEditor *editor =
                _editors[static_cast<qsizetype>(page)][static_cast<qsizetype>(index)];
            editor->show(field, fromModel(settings.value(field.id)));
            editor->showProblem(problems.value(editor->id()));
        }
    const auto keys = problems.keys();
    markProblems(pages, {keys.begin(), keys.end()});
}

std::vector<SettingsPages::PageOfFields> SettingsPages::pagesOf(const QueueSettings &settings)
{
    std::vector<PageOfFields> pages;
    for (const Model::Page page : Model::kPages)
        if (auto fields = settings.fields(page); !fields.empty())
            pages.push_back({page, std::move(fields)});
    return pages;
}

bool SettingsPages::fits(const std::vector<PageOfFields> &pages) const
{
    const auto editorFits = [](const Field &field, const FieldEditor *editor) {
        return editor->fits(field);
    };
    const auto pageFits = [&](const PageOfFields &page, const QList<FieldEditor *> &editors) {
        return std::ranges::equal(page.fields, editors, editorFits);
    };
    return std::ranges::equal(pages, _editors, pageFits);
}

void SettingsPages::build(const std::vector<PageOfFields> &pages)
{
    const int current = std::max(0, _names->currentRow());
    _names->clear();
    _editors.clear();
    while (QWidget *old = _stack->widget(0)) {
        _stack->removeWidget(old);
        old->setParent(nullptr);
        old->deleteLater(); // one of its editors may be waiting for us to come back
    }
    for (const PageOfFields &page : pages) {
        _names->addItem(inWords({Model::titleOf(page.page)}));
        _stack->addWidget(makePage(page));
    }
    fitWidth(*_names);
    leadKeyboardToFields();
    setCurrentPage(std::min(current, _names->count() - 1));
}

/// From the list Tab goes on to the fields, though all that stands behind them is older.
void SettingsPages::leadKeyboardToFields()
{
    QWidget *last = _names;
    for (const auto &page : std::as_const(_editors))
        for (FieldEditor *editor : page) {
            setTabOrder(last, editor);
            last = editor;
        }
}

/// A page that is longer than the window scrolls; it does not widen it.
QWidget *SettingsPages::makePage(const PageOfFields &page)
{
    auto *area = new QScrollArea(_stack);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    auto *content = new QWidget(area);
    auto *form = new QFormLayout(content);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    _editors.append(QList<FieldEditor *>());

    // Headings where the printer's own groups change.
    Model::Words group;
    for (const Field &field : page.fields) {
        if (page.page == Model::Page::Printer && field.group != group)
            form->addRow(heading(inWords(field.group), content));
        group = field.group;
        addField(*form, field);
    }
    area->setWidget(content);
    area->setAccessibleName(inWords({Model::titleOf(page.page)}));
    area->setMinimumWidth(content->minimumSizeHint().width());
    return area;
}

void SettingsPages::addField(QFormLayout &form, const Field &field)
{
    FieldEditor *editor = FieldEditor::make(field, form.parentWidget());
    form.addRow(editor->label(), editor);
    connect(editor, &FieldEditor::edited, this, &SettingsPages::edited);
    _editors.last().append(editor);
}

void SettingsPages::markProblems(const std::vector<PageOfFields> &pages,
                                 const QSet<QString> &fields)
{
    const QIcon warning = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    for (int row = 0; row < static_cast<int>(pages.size()); ++row) {
        const bool any = std::ranges::any_of(
            pages[static_cast<std::size_t>(row)].fields,
            [&](const Field &field) { return fields.contains(fromModel(field.id)); });
        _names->item(row)->setIcon(any ? warning : QIcon());
        _names->item(row)->setToolTip(any ? tr("Something here needs mending") : QString());
    }
    fitWidth(*_names);
}

void SettingsPages::goToField(const QString &id)
{
    for (int page = 0; page < static_cast<int>(_editors.size()); ++page)
        for (FieldEditor *editor : std::as_const(_editors[page]))
            if (editor->id() == id) {
                setCurrentPage(page);
                editor->setFocus();
                return;
            }
}

int SettingsPages::currentPage() const
{
    return _names->currentRow();
}

void SettingsPages::setCurrentPage(int index)
{
    _names->setCurrentRow(index);
}
