#include "tests/app/WholeWindow.h"

#include "app/OrvgOpenXmlSettingsDialog.h"
#include "tests/support/LoopbackPeer.h"
#include "tests/support/modal_dialogs.h"
#include "views/positions/OrvgSensorPositionView.h"
#include "views/sequence/OrvgMseqView.h"
#include "views/thresholds/OrvgThresholdView.h"

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QXmlStreamWriter>

WholeWindow::WholeWindow(const QStringList& ecuArguments)
    : mSimulator(QStringList{"--streams", "off"} + ecuArguments)
    , mReceivePort(freeUdpPort())
    , mFreespacePort(freeUdpPort())
    , mEcu(std::make_unique<EcuAccess>(mSimulator.controlPort()))
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    mEcu->write(configurationOfSeed(0));
    mProfile.setNetwork(mSimulator.controlPort(), mReceivePort, mFreespacePort);
    mWindow = std::make_unique<TarvioWindow>();
    mWindow->onStatusTimeout();
}

void WholeWindow::stopSimulator()
{
    mSimulator.stop();
    mPatience.reset();
}

void WholeWindow::trigger(const char* action)
{
    mWindow->findChild<QAction*>(QLatin1String(action))->trigger();
}

QString WholeWindow::message() const
{
    return mWindow->statusBar()->currentMessage();
}

QString WholeWindow::configuration() const
{
    QString text;
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.writeStartElement(QStringLiteral("Views"));
    mWindow->findChild<OrvgMseqView*>()->writeXml(writer);
    mWindow->findChild<OrvgThresholdView*>()->writeXml(writer);
    mWindow->findChild<OrvgSensorPositionView*>()->writeXml(writer);
    writer.writeEndElement();
    return text;
}

void WholeWindow::exportTo(const QString& fileName)
{
    whenOpened<QFileDialog>(mWindow.get(), [fileName](QFileDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(fileName);
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    });
    trigger("actionSaveSettings");
}

void WholeWindow::importFrom(const QString& fileName, bool withNetwork, const QStringList& unticked)
{
    const auto act = [=](OrvgOpenXmlSettingsDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("mFileLineEdit"))->setText(fileName);
        if (withNetwork)
            dialog.findChild<QCheckBox*>(QStringLiteral("mNetworkCb"))->click();
        for (const QString& name : unticked)
            dialog.findChild<QCheckBox*>(name)->click();
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    };
    whenOpened<OrvgOpenXmlSettingsDialog>(mWindow.get(), act);
    trigger("actionOpenSettings");
}
