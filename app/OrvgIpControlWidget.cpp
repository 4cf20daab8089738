#include "app/OrvgIpControlWidget.h"

#include "app/IPItemValidator.h"
#include "app/OctetEdit.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

#include <algorithm>
#include <utility>

namespace {

constexpr int kMaxWidth = 120;
constexpr int kMinWidth = 96;
constexpr int kMinFontPixels = 8;
constexpr int kFullLength = 3;
constexpr int kBitsPerOctet = 8;
constexpr std::uint32_t kOctetMask = 0xFF;
constexpr QLatin1Char kDot('.');

bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_AltGr || key == Qt::Key_Meta;
}

QFont fixedPitchFont()
{
    QFont font(QStringLiteral("Monospace"), QApplication::font().pointSize());
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

QString withoutLeadingZeros(const QString& octet)
{
    return octet.isEmpty() ? octet : QString::number(octet.toUInt());
}

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
    QFont font = fixedPitchFont();
    for (int pixels = QFontInfo(font).pixelSize(); pixels >= kMinFontPixels; --pixels) {
        font.setPixelSize(pixels);
        if (widthFor(font) <= availableWidth)
            break;
    }
    for (OctetEdit* field : mFields)
        field->setFont(font);
}

int OrvgIpControlWidget::widthFor(const QFont& font) const
{
    const int dotWidth = fontMetrics().horizontalAdvance(kDot);
    return kOctetCount * OctetEdit::widthFor(font) + (kOctetCount - 1) * dotWidth +
           2 * frameWidth();
}

QString OrvgIpControlWidget::text() const
{
    QStringList octets;
    for (const OctetEdit* field : mFields)
        octets.append(withoutLeadingZeros(field->text()));
    return octets.join(kDot);
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

bool OrvgIpControlWidget::eventFilter(QObject* watched, QEvent* event)
{
    const int index = indexOf(watched);
    return index == kNoField ? QFrame::eventFilter(watched, event) : handleFieldEvent(index, event);
}

void OrvgIpControlWidget::slotTextChanged(QLineEdit* pEdit)
{
    const int index = indexOf(pEdit);
    // The call is queued: what was typed in between may have left the field already.
    if (index == kNoField || window()->focusWidget() != pEdit)
        return;
    // A selected octet waits to be replaced: a modifier, pressed for what comes next, leaves it so.
    if (pEdit->text().size() != kFullLength || !fieldAt(index)->isAtEnd() ||
        pEdit->hasSelectedText() || index + 1 == kOctetCount)
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
}

bool OrvgIpControlWidget::handleFieldEvent(int index, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return handleKey(index, *static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
    case QEvent::FocusOut:
        mMovedOnTo = kNoField;
        return false;
    default:
        return false;
    }
}

bool OrvgIpControlWidget::handleKey(int index, const QKeyEvent& key)
{
    // Some keyboards need a modifier for the dot.
    const bool followsMove = mMovedOnTo == index;
    if (!isModifier(key.key()))
        mMovedOnTo = kNoField;
    switch (key.key()) {
    case Qt::Key_Period:
        return handleDot(index, followsMove);
    case Qt::Key_Tab:
        return handleTab(index);
    case Qt::Key_Right:
        return handleRight(index);
    case Qt::Key_Left:
        return handleLeft(index);
    default:
        emit signalTextChanged(fieldAt(index));
        return false;
    }
}

// A dot is never typed into a field.
bool OrvgIpControlWidget::handleDot(int index, bool followsMove)
{
    if (!followsMove && fieldAt(index)->isAtEnd() && index + 1 < kOctetCount)
        moveTo(index + 1);
    return true;
}

bool OrvgIpControlWidget::handleTab(int index)
{
    if (!fieldAt(index)->isAtEnd())
        return true;
    if (index + 1 == kOctetCount)
        return false;
    moveTo(index + 1);
    return true;
}

bool OrvgIpControlWidget::handleRight(int index)
{
    if (fieldAt(index)->isAtEnd() && index + 1 < kOctetCount)
        moveTo(index + 1);
    return false;
}

bool OrvgIpControlWidget::handleLeft(int index)
{
    if (index > 0 && fieldAt(index)->cursorPosition() == 0) {
        OctetEdit* previous = fieldAt(index - 1);
        previous->setFocus();
        previous->end(false);
    }
    return false;
}

void OrvgIpControlWidget::showPastedAddress(const QString& address)
{
    setText(address);
    mFields.back()->setFocus();
    mFields.back()->end(false);
}
