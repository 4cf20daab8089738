#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

namespace orv {
struct FirmwareVersion;
}

/// Shows in the status bar whether the ECU answers and sends live data: an LED and, while it
/// answers, its firmware version.
class OrvgStatusWidget : public QWidget
{
    Q_OBJECT

public:
    explicit OrvgStatusWidget(QWidget* parent = nullptr);

    /// The ECU answers.
    void setConnected(bool connected);
    bool isConnected() const { return mConnected; }

    /// The ECU answers but sends no live data; counts only while it answers.
    void setNoLiveData(bool noLiveData);

    void setFirmwareVersion(const orv::FirmwareVersion& version);
    QString firmwareVersion() const { return mFirmwareVersion; }

    /// What is wrong besides, a line of the tool tip each.
    void setTroubles(const QStringList& troubles);

    /// The resource name of the LED that stands for the state.
    QString ledImage() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void updateToolTip();
    void showChange();
    QString stateText() const;
    int suitableHeight() const;

    bool mConnected = false;
    bool mNoLiveData = false;
    QString mFirmwareVersion;
    QStringList mTroubles;
};
