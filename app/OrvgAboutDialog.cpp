#include "app/OrvgAboutDialog.h"

#include "orv_decoder/build_info.h"
#include "ui_OrvgAboutDialog.h"
#include "views/common/contrast.h"

#include <QIcon>
#include <QSize>
#include <QStringList>

namespace {

constexpr QSize kIconSize(64, 64);
constexpr QLatin1Char kFill(' ');

// Some dark palettes keep the blue of the light ones.
QColor linkColor(const QPalette& palette)
{
    return readableTextColor(palette.color(QPalette::Link), palette.color(QPalette::Window));
}

} // namespace

OrvgAboutDialog::OrvgAboutDialog(QWidget* parent)
    : QDialog(parent), mUi(std::make_unique<Ui::OrvgAboutDialog>())
{
    mUi->setupUi(this);
    // An icon picks the picture for the screen's pixel ratio, a pixmap alone does not.
    mUi->iconLabel->setPixmap(QIcon(QStringLiteral(":/icons/icons/wave.png")).pixmap(kIconSize));
    const QString version = versionOfBuildRecord(QString::fromLatin1(orv::kBuildRecord));
    const QString commitId = QString::fromLatin1(orv::kCommitId);
    mUi->infoLabel->setText(
        tr("<p align=\"center\">Version: %1 (%2)</p>"
           "<p align=\"center\"><a href=\"https://maltrex.example\" style=\"color: %3\">"
           "<b><u>https://maltrex.example</u></b></a></p>")
            .arg(version, 0, kFill)
            .arg(commitId, 0, kFill)
            .arg(linkColor(palette()).name()));
}

OrvgAboutDialog::~OrvgAboutDialog() = default;

QString versionOfBuildRecord(const QString& buildRecord)
{
    return buildRecord.split(QLatin1Char('-')).value(1);
}
