#include "KeepDialog.h"
#include "KeptSettings.h"
#include "keys.h"
#include "labels.h"
#include "words.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

KeepDialog::KeepDialog(const QString &printer, const QString &countsFor, const QStringList &sets,
                       const QString &current, bool hasSecrets, const QString &whoCanRead,
                       QWidget *parent)
    : QDialog(parent),
      _asDefaults(
          new QRadioButton(tr("As my &defaults for %1").arg(withoutMnemonic(printer)), this)),
      _asSet(new QRadioButton(tr("As a set with a &name, which print dialogs list:"), this)),
      _name(new QComboBox(this)),
      _objection(plainLabel({}, this)),
      _secrets(new QCheckBox(tr("Keep &PIN and passwords, too"), this))
{
    setWindowTitle(tr("Keep Settings"));
    _name->setEditable(true);
    _name->addItems(sets);
    _name->setCurrentText(current);
    nameChoices(*_name, tr("Name of the set"));
    _name->lineEdit()->setPlaceholderText(tr("confidential", "an example of a name"));
    (current.isEmpty() ? _asDefaults : _asSet)->setChecked(true);
    _secrets->setVisible(hasSecrets);
    _secrets->setAccessibleDescription(whoCanRead);
    QLabel *where = plainLabel(whoCanRead, this);
    where->setVisible(hasSecrets);
    QLabel *others = plainLabel(countsFor, this);
    others->setVisible(!countsFor.isEmpty());

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    _keep = buttons->addButton(tr("&Keep"), QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(_asSet, &QRadioButton::toggled, this, &KeepDialog::check);
    connect(_name, &QComboBox::currentTextChanged, this, &KeepDialog::check);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(_asDefaults);
    layout->addWidget(_asSet);
    layout->addWidget(_name);
    layout->addWidget(_objection);
    layout->addWidget(others);
    layout->addWidget(_secrets);
    layout->addWidget(where);
    layout->addStretch();
    layout->addWidget(buttons);
    check();
}

QString KeepDialog::set() const
{
    return _asSet->isChecked() ? _name->currentText() : QString();
}

bool KeepDialog::withSecrets() const
{
    return _secrets->isChecked();
}

/// Says at once what is wrong with a name. An empty one needs no words.
void KeepDialog::check()
{
    _name->setEnabled(_asSet->isChecked());
    const QString name = set();
    const auto objection = Model::KeptSettings::objectionToName(name.toStdString());
    const bool isWrong = _asSet->isChecked() && (name.isEmpty() || objection);
    _objection->setText(isWrong && !name.isEmpty() ? QStringLiteral("⚠ ") + inWords(*objection)
                                                   : QString());
    _objection->setVisible(!_objection->text().isEmpty());
    _keep->setEnabled(!isWrong);
}
