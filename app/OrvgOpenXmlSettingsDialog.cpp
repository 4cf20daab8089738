#include "app/OrvgOpenXmlSettingsDialog.h"

#include "ecu/configuration/SettingsFile.h"
#include "ui_OrvgOpenXmlSettingsDialog.h"

#include <QFileDialog>
#include <QPushButton>

namespace {

// In the form each check box carries the name of its section.
constexpr auto kSectionProperty = "section";

} // namespace

OrvgOpenXmlSettingsDialog::OrvgOpenXmlSettingsDialog(QWidget* parent)
    : QDialog(parent), mUi(std::make_unique<Ui::OrvgOpenXmlSettingsDialog>())
{
    mUi->setupUi(this);
    const auto boxes = mUi->mImportMaskGroupBox->findChildren<QCheckBox*>();
    for (QCheckBox* box : boxes)
        mCheckBoxes.insert(box->property(kSectionProperty).toString(), box);
    // Not in the form: what is created inside of a disabled box is known to screen readers without
    // its kind.
    setImportEnabled(false);
    connect(mUi->mBrowseButton, &QPushButton::clicked, this, &OrvgOpenXmlSettingsDialog::onBrowse);
    connect(mUi->mFileLineEdit, &QLineEdit::textChanged, this,
            &OrvgOpenXmlSettingsDialog::onFileNameChanged);
}

OrvgOpenXmlSettingsDialog::~OrvgOpenXmlSettingsDialog() = default;

QString OrvgOpenXmlSettingsDialog::fileName() const
{
    return mUi->mFileLineEdit->text();
}

bool OrvgOpenXmlSettingsDialog::isSelected(const QString& section) const
{
    const QCheckBox* checkBox = mCheckBoxes.value(section);
    return checkBox && checkBox->isChecked();
}

void OrvgOpenXmlSettingsDialog::onBrowse()
{
    const QString chosen = QFileDialog::getOpenFileName(this, tr("Select settings file"), QString(),
                                                        tr("Orv setting files(*.orv)"));
    if (!chosen.isEmpty())
        mUi->mFileLineEdit->setText(chosen);
}

void OrvgOpenXmlSettingsDialog::onFileNameChanged(const QString& fileName)
{
    setImportEnabled(false);
    const QStringList sections = SettingsFile::sectionsOf(fileName);
    if (sections.isEmpty())
        return;
    offer(sections);
    setImportEnabled(true);
}

// Network settings are never ticked here: importing them is for the user to decide.
void OrvgOpenXmlSettingsDialog::offer(const QStringList& sections)
{
    for (auto entry = mCheckBoxes.cbegin(); entry != mCheckBoxes.cend(); ++entry) {
        const bool isPresent = sections.contains(entry.key());
        entry.value()->setEnabled(isPresent);
        if (entry.value() != mUi->mNetworkCb)
            entry.value()->setChecked(isPresent);
    }
}

void OrvgOpenXmlSettingsDialog::setImportEnabled(bool enabled)
{
    mUi->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(enabled);
    mUi->mImportMaskGroupBox->setEnabled(enabled);
}
