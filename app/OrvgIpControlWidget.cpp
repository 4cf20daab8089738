#include "app/OrvgIpControlWidget.h"

#include "app/OctetEdit.h"
#include "ecu/store/ip_address.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

#include <algorithm>

namespace {

constexpr int kMaxWidth = 120;
constexpr int kMinWidth = 96;
constexpr int kBitsPerOctet = 8;
constexpr std::uint32_t kOctetMask = 0xFF;
constexpr QLatin1Char kDot('.');

} // namespace

OrvgIpControlWidget::OrvgIpControlWidget(QWidget* parent, const QString& text) : QFrame(parent)
{
    setUpFrame();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (int index = 0; index < kOctetCount; ++index) {
        if (index > 0)
            addDot(layout);
        mFields[static_cast<std::size_t>(index)] = createField(index);
        layout->addWidget(fieldAt(index), 1);
    }
    for (std::size_t index = 1; index < mFields.size(); ++index)
        setTabOrder(mFields[index - 1], mFields[index]);
    fitFont(kMaxWidth);
    setFocusProxy(mFields.front());
    connect(this, &OrvgIpControlWidget::signalTextChanged, this,
            &OrvgIpControlWidget::slotTextChanged, Qt::QueuedConnection);
    setText(text);
}

void OrvgIpControlWidget::setUpFrame()
{
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumWidth(kMinWidth);
    setMaximumWidth(kMaxWidth);
}

OctetEdit* OrvgIpControlWidget::createField(int index)
{
    auto* field = new OctetEdit(this);
    field->setAccessibleName(tr("octet %1 of %2").arg(index + 1).arg(kOctetCount));
    field->installEventFilter(this);
    connect(field, &OctetEdit::textChanged, this, &OrvgIpControlWidget::addressChanged);
    connect(field, &OctetEdit::addressPasted, this, &OrvgIpControlWidget::showPastedAddress);
    return field;
}

void OrvgIpControlWidget::addDot(QHBoxLayout* layout)
{
    auto* dot = new QLabel(QString(kDot), this);
    dot->setAutoFillBackground(true);
    dot->setBackgroundRole(QPalette::Base);
    layout->addWidget(dot, 0);
}

void OrvgIpControlWidget::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    fitFont(width());
}

// Three digits have to fit into each field, whatever the size of the system's fonts.
void OrvgIpControlWidget::fitFont(int availableWidth)
{
    const int dots = (kOctetCount - 1) * fontMetrics().horizontalAdvance(kDot);
    const int fields = availableWidth - dots - 2 * frameWidth();
    const QFont font = OctetEdit::fontFor(fields / kOctetCount);
    for (OctetEdit* field : mFields)
        field->setFont(font);
}

QString OrvgIpControlWidget::text() const
{
    QStringList octets;
    for (const OctetEdit* field : mFields)
        octets.append(withoutLeadingZeros(field->text()));
    return octets.join(kDot);
}

bool OrvgIpControlWidget::isComplete() const
{
    return std::none_of(mFields.begin(), mFields.end(),
                        [](const OctetEdit* field) { return field->text().isEmpty(); });
}

void OrvgIpControlWidget::setText(const QString& text)
{
    const QStringList parts = text.split(kDot, Qt::SkipEmptyParts);
    for (int index = 0; index < kOctetCount; ++index) {
        const QString part = parts.value(index).trimmed();
        fieldAt(index)->setText(isOctet(part) ? part : QString());
    }
}

std::uint32_t OrvgIpControlWidget::value() const
{
    std::uint32_t address = 0;
    int shift = 0;
    for (const OctetEdit* field : mFields) {
        address |= (field->text().toUInt() & kOctetMask) << shift;
        shift += kBitsPerOctet;
    }
    return address;
}

void OrvgIpControlWidget::setValue(std::uint32_t address)
{
    for (OctetEdit* field : mFields) {
        field->setText(QString::number(address & kOctetMask));
        address >>= kBitsPerOctet;
    }
}

void OrvgIpControlWidget::startTyping()
{
    moveTo(0);
}

bool OrvgIpControlWidget::eventFilter(QObject* watched, QEvent* event)
{
    const int index = indexOf(watched);
    if (index == kNoField)
        return QFrame::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress)
        return handleKey(index, *static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::FocusOut)
        mMovedOnTo = kNoField;
    return false;
}

void OrvgIpControlWidget::slotTextChanged(QLineEdit* pEdit)
{
    const int index = indexOf(pEdit);
    // The call is queued: what was typed in between may have left the field already.
    if (index == kNoField || index == mStaysIn || window()->focusWidget() != pEdit)
        return;
    if (index + 1 == kOctetCount || !isFullBeforeCursor(stateOf(index)))
        return;
    moveTo(index + 1);
    mMovedOnTo = index + 1;
}

int OrvgIpControlWidget::indexOf(const QObject* field) const
{
    const auto found = std::find(mFields.begin(), mFields.end(), field);
    return found == mFields.end() ? kNoField : static_cast<int>(found - mFields.begin());
}

OctetEdit* OrvgIpControlWidget::fieldAt(int index) const
{
    return mFields[static_cast<std::size_t>(index)];
}

void OrvgIpControlWidget::moveTo(int index)
{
    OctetEdit* field = fieldAt(index);
    field->setFocus();
    field->setCursorPosition(0);
    field->selectAll();
    mIsFocusMoving = true;
    QMetaObject::invokeMethod(
        this, [this] { mIsFocusMoving = false; }, Qt::QueuedConnection);
}

void OrvgIpControlWidget::moveToEndOf(int index)
{
    fieldAt(index)->setFocus();
    fieldAt(index)->end(false);
}

OctetField OrvgIpControlWidget::stateOf(int index) const
{
    const OctetEdit* field = fieldAt(index);
    return {.index = index,
            .text = field->text(),
            .cursor = field->cursorPosition(),
            .hasSelection = field->hasSelectedText(),
            .wasMovedTo = mMovedOnTo == index};
}

bool OrvgIpControlWidget::handleKey(int index, QKeyEvent& event)
{
    const int focused = indexOf(window()->focusWidget());
    if (mIsFocusMoving && focused != kNoField && focused != index)
        return sendTo(focused, event);
    const OctetKeyAction action =
        octetKeyAction({.key = event.key(), .typed = event.text()}, stateOf(index));
    // Some keyboards need a modifier for the dot.
    if (!isModifierKey(event.key()))
        mMovedOnTo = kNoField;
    mStaysIn = action == OctetKeyAction::Stay ? index : kNoField;
    return act(action, index, event);
}

// True when the field is to know nothing of the key.
bool OrvgIpControlWidget::act(OctetKeyAction action, int index, QKeyEvent& event)
{
    switch (action) {
    case OctetKeyAction::Type:
    case OctetKeyAction::Stay:
        emit signalTextChanged(fieldAt(index));
        return false;
    case OctetKeyAction::Pass:
        return false;
    case OctetKeyAction::Ignore:
        return true;
    case OctetKeyAction::MoveOn:
        moveTo(index + 1);
        return true;
    case OctetKeyAction::MoveOnAndPass:
        moveTo(index + 1);
        return false;
    case OctetKeyAction::MoveOnAndType:
        moveTo(index + 1);
        return sendTo(index + 1, event);
    case OctetKeyAction::MoveBack:
        moveToEndOf(index - 1);
        return false;
    }
    return false;
}

bool OrvgIpControlWidget::sendTo(int index, QKeyEvent& event)
{
    QCoreApplication::sendEvent(fieldAt(index), &event);
    return true;
}

void OrvgIpControlWidget::showPastedAddress(const QString& address)
{
    setText(address);
    moveToEndOf(kOctetCount - 1);
}
