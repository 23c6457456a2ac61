#include "FieldEditor.h"
#include "keys.h"
#include "labels.h"
#include "words.h"

#include <QAbstractItemView>
#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QTextLayout>
#include <QWheelEvent>

#include <algorithm>

using Model::Choice;
using Model::Field;
using Model::Kind;

namespace {

/// The words of a label, a long one in several lines, each no wider than 26 letters.
QString inLines(const QString &words, const QFontMetrics &metrics)
{
    const int width = 26 * metrics.averageCharWidth();
    QTextLayout layout(words);
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(wrapping);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines << words.sliced(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines.join(u'\n');
}

/// What stands in front of a typed value of an option that has choices, too.
const QString kCustom = QStringLiteral("Custom.");

/// A field whose choices are all but "nothing": what is typed is all there is to it.
bool isOnlyTyped(const Field &field)
{
    return field.kind == Kind::Choice && field.typed && field.choices.size() == 1;
}

/// The kind of what is typed.
Kind typedKind(const Field &field)
{
    return field.typed.value_or(field.kind);
}

// MARK: one control for each kind

class FlagEditor : public FieldEditor {
public:
    FlagEditor(const Field &field, QWidget *parent)
        : FieldEditor(field, parent), _box(new QCheckBox(this))
    {
        setControl(_box);
        connect(_box, &QCheckBox::clicked, this,
                [this](bool on) { report(on ? QStringLiteral("True") : QStringLiteral("False")); });
    }

protected:
    void showValue(const Field & /*field*/, const QString &value) override
    {
        _box->setChecked(value == u"True");
    }

private:
    QCheckBox *_box;
};

/// A line to type in, for a text of any kind. What assistive technology puts into it counts as
/// typed, too.
class TypingLine : public QLineEdit {
public:
    TypingLine(const Field &field, QWidget *parent) : QLineEdit(parent)
    {
        if (const Kind kind = typedKind(field); kind == Kind::Digits)
            setInputMethodHints(Qt::ImhDigitsOnly);
        if (field.isSecret)
            hideWhatIsTyped();
    }

    /// Leaves the cursor alone when the text is there already. Nobody is told of a change.
    void showText(const QString &text)
    {
        const QSignalBlocker quiet(this);
        if (this->text() != text)
            setText(text);
    }

private:
    void hideWhatIsTyped()
    {
        setEchoMode(QLineEdit::Password);
        QAction *reveal = addAction(eye(), QLineEdit::TrailingPosition);
        reveal->setCheckable(true);
        reveal->setText(FieldEditor::tr("Show what is typed"));
        connect(reveal, &QAction::toggled, this,
                [this](bool on) { setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password); });
    }

    QIcon eye() const
    {
        return QIcon::fromTheme(QStringLiteral("view-reveal-symbolic"),
                                style()->standardIcon(QStyle::SP_FileDialogContentsView));
    }
};

class TextEditor : public FieldEditor {
public:
    TextEditor(const Field &field, QWidget *parent)
        : FieldEditor(field, parent),
          _line(new TypingLine(field, this)),
          _prefixed(isOnlyTyped(field))
    {
        if (_prefixed) {
            _line->setPlaceholderText(inWords(field.choices[0].label));
            _nothing = fromModel(field.choices[0].name);
        }
        setControl(_line, besideFor(field));
        connect(_line, &QLineEdit::textChanged, this, &TextEditor::reportText);
    }

protected:
    void showValue(const Field & /*field*/, const QString &value) override
    {
        if (!_prefixed)
            _line->showText(value);
        else
            _line->showText(value.startsWith(kCustom) ? value.sliced(kCustom.size()) : QString());
        showSwatch();
    }

private:
    void reportText(const QString &text)
    {
        if (_prefixed)
            report(text.isEmpty() ? _nothing : kCustom + text);
        else
            report(text);
    }

    QWidget *besideFor(const Field &field)
    {
        if (typedKind(field) == Kind::Color)
            return colorButton();
        return typedKind(field) == Kind::File ? fileButton() : nullptr;
    }

    QPushButton *colorButton()
    {
        _swatch = new QPushButton(this);
        _swatch->setAccessibleName(FieldEditor::tr("Choose a colour"));
        _swatch->setToolTip(FieldEditor::tr("Choose a colour"));
        connect(_swatch, &QPushButton::clicked, this, [this] {
            const QColor chosen = QColorDialog::getColor(color(), this);
            if (chosen.isValid())
                _line->setText(QStringLiteral("%1,%2,%3")
                                   .arg(chosen.redF(), 0, 'g', 3)
                                   .arg(chosen.greenF(), 0, 'g', 3)
                                   .arg(chosen.blueF(), 0, 'g', 3));
        });
        return _swatch;
    }

    QPushButton *fileButton()
    {
        auto *button = new QPushButton(FieldEditor::tr("Choose…"), this);
        button->setAccessibleName(FieldEditor::tr("Choose a file"));
        connect(button, &QPushButton::clicked, this, [this] {
            const QString path = QFileDialog::getOpenFileName(this, {}, _line->text());
            if (!path.isEmpty())
                _line->setText(path);
        });
        return button;
    }

    /// The colour that is typed, as a screen can show it: grey, RGB or CMYK.
    QColor color() const
    {
        QList<float> parts;
        for (const QString &part : _line->text().split(u','))
            parts.append(std::clamp(part.toFloat(), 0.0F, 1.0F));
        if (parts.size() == 4)
            return QColor::fromCmykF(parts[0], parts[1], parts[2], parts[3]);
        if (parts.size() == 3)
            return QColor::fromRgbF(parts[0], parts[1], parts[2]);
        return QColor::fromRgbF(parts[0], parts[0], parts[0]);
    }

    void showSwatch()
    {
        if (_swatch == nullptr)
            return;
        QPixmap pixmap(_swatch->iconSize());
        pixmap.fill(color());
        _swatch->setIcon(pixmap);
    }

    TypingLine *_line;
    QPushButton *_swatch = nullptr; ///< of a colour only
    bool _prefixed;                 ///< the value is a choice, or "Custom." and what is typed
    QString _nothing = {};          ///< the choice that is taken when nothing is typed
};

/// A list that a mouse wheel changes only once somebody is in it: on a page that scrolls, the wheel
/// is on its way past it. When it is opened, each choice is seen as a whole.
class ChoiceList : public QComboBox {
public:
    using QComboBox::QComboBox;

    void showPopup() override
    {
        view()->setMinimumWidth(view()->sizeHintForColumn(0) +
                                style()->pixelMetric(QStyle::PM_ScrollBarExtent));
        QComboBox::showPopup();
    }

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }
};

/// A list of choices, the last of them perhaps "what you type".
class ChoiceEditor : public FieldEditor {
public:
    ChoiceEditor(const Field &field, QWidget *parent)
        : FieldEditor(field, parent), _list(new ChoiceList(this))
    {
        _list->setFocusPolicy(Qt::StrongFocus);
        _list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        _list->setMinimumContentsLength(20);
        for (const Choice &choice : field.choices)
            _list->addItem(inWords(choice.label), fromModel(choice.name));
        if (field.typed)
            addTyping(field);
        setControl(_list, _line);
        nameChoices(*_list, inWords(field.label));
        connect(_list, &QComboBox::activated, this, &ChoiceEditor::reportChoice);
    }

protected:
    void showValue(const Field &field, const QString &value) override
    {
        for (int index = 0; index < static_cast<int>(field.choices.size()); ++index)
            showPossible(index, field.choices[static_cast<std::size_t>(index)]);
        const bool typed = _line != nullptr && value.startsWith(kCustom);
        _list->setCurrentIndex(typed ? _list->count() - 1 : _list->findData(value));
        if (_line != nullptr)
            _line->setVisible(typed);
        if (typed)
            _line->showText(value.sliced(kCustom.size()));
    }

private:
    void addTyping(const Field &field)
    {
        const QString words = inWords(field.typedLabel);
        _list->addItem(words.isEmpty() ? FieldEditor::tr("Other…") : words, kCustom);
        _line = new TypingLine(field, this);
        _line->setAccessibleName(inWords(field.label) + QStringLiteral(": ") +
                                 _list->itemText(_list->count() - 1));
        connect(_line, &QLineEdit::textChanged, this,
                [this](const QString &text) { report(kCustom + text); });
    }

    void reportChoice(int index)
    {
        const QString value = _list->itemData(index).toString();
        const bool typed = value == kCustom;
        report(typed ? kCustom + _line->text() : value);
        if (typed) {
            _line->show();
            _line->setFocus();
        }
    }

    void showPossible(int index, const Choice &choice)
    {
        auto *model = qobject_cast<QStandardItemModel *>(_list->model());
        QStandardItem *item = model->item(index);
        item->setEnabled(choice.possible);
        item->setToolTip(choice.possible ? QString() : inWords(choice.whyNot));
        item->setData(item->toolTip(), Qt::AccessibleDescriptionRole);
    }

    ChoiceList *_list;
    TypingLine *_line = nullptr; ///< where something can be typed, too
};

} // namespace

FieldEditor *FieldEditor::make(const Field &field, QWidget *parent)
{
    if (field.kind == Kind::Flag)
        return new FlagEditor(field, parent);
    if (field.kind == Kind::Choice && !isOnlyTyped(field))
        return new ChoiceEditor(field, parent);
    return new TextEditor(field, parent);
}

FieldEditor::FieldEditor(const Field &field, QWidget *parent)
    : QWidget(parent),
      _fieldId(fromModel(field.id)),
      _madeFor(field),
      _label(new QLabel(this)),
      _problem(plainLabel({}, this))
{
    _label->setTextFormat(Qt::PlainText);
    _problem->hide();
    setObjectName(_fieldId);
}

void FieldEditor::setControl(QWidget *control, QWidget *beside)
{
    _control = control;
    const QString words = inWords(_madeFor.label);
    _label->setText(withoutMnemonic(inLines(words, fontMetrics())));
    _label->setBuddy(control);
    control->setAccessibleName(words);
    setFocusPolicy(control->focusPolicy()); // else it has no place in the order of Tab
    setFocusProxy(control);

    auto *row = new QHBoxLayout;
    row->addWidget(control, 1);
    if (beside != nullptr)
        row->addWidget(beside);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(row);
    layout->addWidget(_problem);
}

void FieldEditor::show(const Field &field, const QString &value)
{
    const QString whyNot = field.possible ? QString() : inWords(field.whyNot);
    setEnabled(field.possible);
    setToolTip(whyNot);
    _control->setAccessibleDescription(whyNot);
    _label->setEnabled(field.possible);
    _label->setToolTip(whyNot);
    showValue(field, value);
}

void FieldEditor::showProblem(const QString &words)
{
    _problem->setText(words.isEmpty() ? QString() : QStringLiteral("⚠ ") + words);
    _problem->setVisible(!words.isEmpty());
    if (!words.isEmpty())
        _control->setAccessibleDescription(words);
}

bool FieldEditor::fits(const Field &field) const
{
    const auto sameChoice = [](const Choice &one, const Choice &other) {
        return one.name == other.name && one.label == other.label;
    };
    return field.id == _madeFor.id && field.label == _madeFor.label &&
           field.group == _madeFor.group && field.kind == _madeFor.kind &&
           field.typed == _madeFor.typed &&
           std::ranges::equal(field.choices, _madeFor.choices, sameChoice);
}
