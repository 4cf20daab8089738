#include "tests/app/scenes/accessibility_faults.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QTabBar>
#include <QtTest>

#include <optional>

namespace {

// More than any window has.
constexpr int kMaxParts = 200;

bool isOfQt(const QWidget& widget)
{
    return widget.objectName().startsWith(QLatin1String("qt_"));
}

bool showsPictureOnly(const QWidget& widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const auto isWord = [](const QString& text) {
        return std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetter(); }) > 1;
    };
    return (button && !isWord(button->text())) ||
           (label && label->pixmap(Qt::ReturnByValue).width() > 0);
}

bool isKindOfButton(QAccessible::Role role)
{
    return role == QAccessible::Button || role == QAccessible::CheckBox ||
           role == QAccessible::RadioButton || role == QAccessible::ButtonMenu;
}

bool suits(QAccessible::Role role, const QWidget& widget)
{
    if (qobject_cast<const QAbstractButton*>(&widget))
        return isKindOfButton(role);
    if (qobject_cast<const QAbstractSpinBox*>(&widget))
        return role == QAccessible::SpinBox;
    if (qobject_cast<const QComboBox*>(&widget))
        return role == QAccessible::ComboBox;
    if (qobject_cast<const QLineEdit*>(&widget))
        return role == QAccessible::EditableText;
    if (qobject_cast<const QAbstractSlider*>(&widget))
        return role == QAccessible::Slider || role == QAccessible::ScrollBar;
    if (widget.inherits("QTableView"))
        return role == QAccessible::Table;
    if (qobject_cast<const QTabBar*>(&widget))
        return role == QAccessible::PageTabList;
    return role != QAccessible::NoRole;
}

// Nothing but a graphic says that there is something to be seen.
bool isPicture(const QWidget& widget)
{
    return widget.inherits("OrvgPlotWidget") || widget.inherits("OrvgSignalLineWidget") ||
           widget.inherits("OrvgSignalWidget") || widget.inherits("OrvgFreespaceGraphicsView");
}

QStringList faultsOf(QAccessibleInterface& part)
{
    const auto* widget = qobject_cast<QWidget*>(part.object());
    if (!widget || isOfQt(*widget))
        return {};
    QStringList faults;
    if (widget->focusProxy())
        return {};
    const bool needsName =
        part.state().focusable || showsPictureOnly(*widget) || isPicture(*widget);
    if (needsName && part.text(QAccessible::Name).trimmed().isEmpty())
        faults << nameOf(*widget) + QStringLiteral(" has no name");
    const bool isSuited =
        isPicture(*widget) ? part.role() == QAccessible::Graphic : suits(part.role(), *widget);
    if (needsName && !isSuited)
        faults << nameOf(*widget) + QStringLiteral(" has the role %1").arg(part.role());
    return faults;
}

void collectFaults(QAccessibleInterface* part, QStringList& faults)
{
    if (!part || part->state().invisible)
        return;
    faults += faultsOf(*part);
    if (part->role() == QAccessible::Table || part->role() == QAccessible::List)
        return;
    for (int child = 0; child < part->childCount(); ++child)
        collectFaults(part->child(child), faults);
}

// --- mnemonics

QStringList textsOf(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions())
        texts << (action->isVisible() ? action->text() : QString());
    return texts;
}

QStringList textsOf(const QTabBar& tabs)
{
    QStringList texts;
    for (int tab = 0; tab < tabs.count(); ++tab)
        texts << tabs.tabText(tab);
    return texts;
}

QStringList textsOf(const QWidget& part)
{
    if (const auto* bar = qobject_cast<const QMenuBar*>(&part)) {
        QStringList texts;
        for (const QAction* action : bar->actions())
            texts << action->text();
        return texts;
    }
    if (const auto* tabs = qobject_cast<const QTabBar*>(&part))
        return textsOf(*tabs);
    if (const auto* button = qobject_cast<const QAbstractButton*>(&part))
        return {button->text()};
    if (const auto* box = qobject_cast<const QGroupBox*>(&part))
        return {box->title()};
    const auto* label = qobject_cast<const QLabel*>(&part);
    return label && label->buddy() ? QStringList(label->text()) : QStringList();
}

QStringList textsIn(const QWidget& window)
{
    if (const auto* menu = qobject_cast<const QMenu*>(&window))
        return textsOf(*menu);
    QStringList texts;
    for (const QWidget* part : window.findChildren<QWidget*>()) {
        if (part->isVisible())
            texts += textsOf(*part);
    }
    return texts;
}

// --- the Tab key

bool takesTab(const QWidget& widget)
{
    return widget.isVisible() && widget.isEnabled() && !widget.focusProxy() &&
           (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && !isOfQt(widget);
}

// The arrow keys lead to the others.
bool isUnchosen(const QWidget& widget)
{
    const auto* button = qobject_cast<const QRadioButton*>(&widget);
    return button && !button->isChecked();
}

// What stands inside a view or another compound widget is its own affair.
bool isPartOfAnother(const QWidget& widget)
{
    const QWidget* parent = widget.parentWidget();
    return qobject_cast<const QAbstractSpinBox*>(parent) ||
           qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractItemView*>(parent);
}

bool isInsideOfCell(const QWidget* widget)
{
    const QWidget* around = widget && widget->parentWidget() ? widget->parentWidget() : nullptr;
    return around && qobject_cast<const QAbstractItemView*>(around->parentWidget());
}

QVector<QWidget*> tabTargets(const QWidget& window)
{
    QVector<QWidget*> targets;
    for (QWidget* part : window.findChildren<QWidget*>()) {
        if (part->window() == &window && takesTab(*part) && !isPartOfAnother(*part) &&
            !isUnchosen(*part) && !isBehindAnother(*part))
            targets << part;
    }
    return targets;
}

// One round, beginning where the focus is.
QVector<QWidget*> roundBy(Qt::Key key, QWidget& window)
{
    QVector<QWidget*> round;
    for (int press = 0; press < kMaxParts; ++press) {
        QWidget* focused = window.focusWidget();
        if (!focused || (round.contains(focused) && focused != round.last()))
            break;
        // A text stops at each of its links.
        if (!round.contains(focused))
            round << focused;
        QTest::keyClick(focused, key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        QCoreApplication::processEvents();
    }
    return round;
}

QRect placeOf(const QWidget& widget)
{
    return {widget.mapToGlobal(QPoint()), widget.size()};
}

// The two ancestors, or the widgets themselves, that stand beside each other.
std::pair<const QWidget*, const QWidget*> siblingsOf(const QWidget& first, const QWidget& second)
{
    const QWidget* ofFirst = &first;
    while (!ofFirst->parentWidget()->isAncestorOf(&second))
        ofFirst = ofFirst->parentWidget();
    const QWidget* ofSecond = &second;
    while (ofSecond->parentWidget() != ofFirst->parentWidget())
        ofSecond = ofSecond->parentWidget();
    return {ofFirst, ofSecond};
}

bool isInReadingOrder(const QWidget& first, const QWidget& second)
{
    if (first.isAncestorOf(&second))
        return true;
    if (second.isAncestorOf(&first))
        return false;
    const auto [before, after] = siblingsOf(first, second);
    const QRect former = placeOf(*before);
    const QRect latter = placeOf(*after);
    return latter.left() > former.right() || latter.top() > former.bottom();
}

// Once in a round the focus comes back to the beginning.
QStringList orderFaults(const QVector<QWidget*>& round)
{
    QStringList faults;
    for (int i = 0; i < round.size() && round.size() > 1; ++i) {
        const QWidget& former = *round[(i + round.size() - 1) % round.size()];
        if (!isInReadingOrder(former, *round[i]))
            faults << QStringLiteral("%1 comes behind %2").arg(nameOf(*round[i]), nameOf(former));
    }
    return faults.size() > 1 ? faults : QStringList();
}

} // namespace

bool isBehindAnother(const QWidget& widget)
{
    for (const QWidget* part = &widget; part; part = part->parentWidget()) {
        const auto* dock = qobject_cast<const QDockWidget*>(part);
        const auto* view = qobject_cast<const QMdiSubWindow*>(part);
        if ((dock && dock->visibleRegion().isEmpty()) ||
            (view && view->mdiArea()->currentSubWindow() != view))
            return true;
    }
    return false;
}

bool isPartOfQt(const QWidget& widget)
{
    for (const QWidget* part = &widget; part; part = part->parentWidget()) {
        if (part->inherits("QFileDialog") || part->objectName().startsWith("qt_"))
            return true;
    }
    return false;
}

QString nameOf(const QWidget& widget)
{
    const QString name = widget.objectName();
    const QString parent = widget.parentWidget() ? widget.parentWidget()->objectName() : QString();
    return QStringLiteral("%1 %2 in %3").arg(widget.metaObject()->className(), name, parent);
}

QStringList namelessParts(QWidget& window)
{
    QStringList faults;
    collectFaults(QAccessible::queryAccessibleInterface(&window), faults);
    return faults;
}

QStringList sharedMnemonics(QWidget& window)
{
    QMap<QString, QStringList> textsByMnemonic;
    for (const QString& text : textsIn(window)) {
        const QString mnemonic = QKeySequence::mnemonic(text).toString();
        if (!mnemonic.isEmpty())
            textsByMnemonic[mnemonic] << text;
    }
    QStringList faults;
    for (auto texts = textsByMnemonic.cbegin(); texts != textsByMnemonic.cend(); ++texts) {
        if (texts.value().size() > 1)
            faults << texts.key() + QStringLiteral(": ") + texts.value().join(QStringLiteral(", "));
    }
    return faults;
}

QStringList tabFaults(QWidget& window)
{
    if (window.inherits("QFileDialog") || window.inherits("QMenu"))
        return {}; // Qt's own
    if (isInsideOfCell(window.focusWidget()))
        return {}; // the next cell comes
    const QVector<QWidget*> targets = tabTargets(window);
    if (targets.isEmpty())
        return {};
    window.activateWindow();
    if (!window.focusWidget())
        targets.first()->setFocus();
    QWidget* start = window.focusWidget();
    const QVector<QWidget*> round = roundBy(Qt::Key_Tab, window);
    start->setFocus();
    const QVector<QWidget*> back = roundBy(Qt::Key_Backtab, window);
    QStringList faults;
    for (const QWidget* target : targets) {
        if (!round.contains(const_cast<QWidget*>(target)))
            faults << nameOf(*target) + QStringLiteral(" is never reached");
        else if (!back.contains(const_cast<QWidget*>(target)))
            faults << nameOf(*target) + QStringLiteral(" is not reached on the way back");
    }
    for (const QWidget* part : round + back) {
        if (isBehindAnother(*part))
            faults << nameOf(*part) + QStringLiteral(" is reached where nobody sees it");
    }
    return faults + orderFaults(round);
}
