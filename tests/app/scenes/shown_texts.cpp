#include "tests/app/scenes/shown_texts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QStyleOption>
#include <QTabBar>
#include <QTableView>
#include <QTextDocument>
#include <QToolButton>

namespace {

using Texts = QVector<ShownText>;

// A line edit keeps this free on either side.
constexpr int kEditMargin = 2;

QSize sizeOf(const QString& text, const QWidget& widget, int flags = Qt::TextShowMnemonic)
{
    return widget.fontMetrics().size(flags, text);
}

QSize plainSizeOf(const QString& text, const QWidget& widget)
{
    return widget.fontMetrics().size(0, text);
}

ShownText unplaced(const QWidget& widget, const QString& text, bool isData = false)
{
    return {.widget = &widget, .text = text, .isData = isData};
}

// The whole room: a text may stand anywhere in it.
ShownText placed(const QWidget& widget, const QString& text, const QRect& room, const QSize& needed)
{
    return {.widget = &widget,
            .text = text,
            .place = room,
            .needed = needed,
            .room = room.size(),
            .isDim = !widget.isEnabled()};
}

// Without the frame around it.
ShownText centered(const QWidget& widget, const QString& text, const QRect& room,
                   const QSize& needed)
{
    ShownText shown = placed(widget, text, room, needed);
    shown.place =
        QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, needed.boundedTo(room.size()), room);
    return shown;
}

// --- labels

QSize neededBy(const QLabel& label)
{
    const int margins = 2 * label.margin() + 2 * label.frameWidth();
    const QSize frame(margins, margins);
    if (label.wordWrap())
        return {label.width(), label.heightForWidth(label.width())};
    if (Qt::mightBeRichText(label.text())) {
        QTextDocument document;
        document.setDefaultFont(label.font());
        document.setDocumentMargin(0);
        document.setHtml(label.text());
        return document.size().toSize() + frame;
    }
    return sizeOf(label.text(), label) + frame;
}

void add(Texts& texts, const QLabel& label)
{
    texts << placed(label, label.text(), label.rect(), neededBy(label));
}

// --- buttons

QRect roomOf(const QPushButton& button)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    return button.style()->subElementRect(QStyle::SE_PushButtonContents, &option, &button);
}

template<typename Button>
QRect roomOf(const Button& button, QStyle::SubElement contents)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    return button.style()->subElementRect(contents, &option, &button);
}

QRect roomOf(const QAbstractButton& button)
{
    if (const auto* push = qobject_cast<const QPushButton*>(&button))
        return roomOf(*push);
    if (const auto* check = qobject_cast<const QCheckBox*>(&button))
        return roomOf(*check, QStyle::SE_CheckBoxContents);
    if (const auto* radio = qobject_cast<const QRadioButton*>(&button))
        return roomOf(*radio, QStyle::SE_RadioButtonContents);
    return button.rect();
}

bool showsText(const QAbstractButton& button)
{
    const auto* tool = qobject_cast<const QToolButton*>(&button);
    return !tool || tool->icon().isNull() || tool->toolButtonStyle() != Qt::ToolButtonIconOnly;
}

void add(Texts& texts, const QAbstractButton& button)
{
    if (!showsText(button))
        return;
    const QRect room = roomOf(button);
    texts << centered(button, button.text(), room, sizeOf(button.text(), button));
    if (qobject_cast<const QCheckBox*>(&button) || qobject_cast<const QRadioButton*>(&button))
        texts.last().place.moveLeft(room.left());
}

// --- fields

void add(Texts& texts, const QGroupBox& box)
{
    QStyleOptionGroupBox option;
    option.initFrom(&box);
    option.text = box.title();
    option.subControls = QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxFrame;
    if (box.isCheckable())
        option.subControls |= QStyle::SC_GroupBoxCheckBox;
    QRect room =
        box.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &box);
    // The style takes what the text needs, also where the box is too narrow.
    const QSize needed(room.left() + box.fontMetrics().boundingRect(box.title().trimmed()).width(),
                       box.fontMetrics().height());
    texts << placed(box, box.title(), room & box.rect(), needed);
    texts.last().room = QSize(box.width(), room.height());
}

void add(Texts& texts, const QComboBox& box)
{
    QStyleOptionComboBox option;
    option.initFrom(&box);
    const QRect room = box.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                   QStyle::SC_ComboBoxEditField, &box);
    for (int item = 0; item < box.count(); ++item) {
        const QSize needed = plainSizeOf(box.itemText(item), box);
        if (item == box.currentIndex())
            texts << placed(box, box.itemText(item), room, needed);
        else
            texts << unplaced(box, box.itemText(item));
    }
}

QRect roomOf(const QLineEdit& edit)
{
    return edit.contentsRect()
        .marginsRemoved(edit.textMargins())
        .adjusted(kEditMargin, 0, -kEditMargin, 0);
}

void add(Texts& texts, const QAbstractSpinBox& box)
{
    const auto* edit = box.findChild<QLineEdit*>();
    const QRect room = roomOf(*edit).translated(edit->pos());
    texts << placed(box, box.text(), room, plainSizeOf(box.text(), *edit));
    texts.last().isData = true;
    // What is selected has two colours of the desktop's.
    texts.last().isDim |= edit->hasSelectedText();
    for (const char* part : {"prefix", "suffix", "specialValueText"})
        texts << unplaced(box, box.property(part).toString());
}

void add(Texts& texts, const QLineEdit& edit)
{
    texts << unplaced(edit, edit.placeholderText());
    ShownText text = placed(edit, edit.text(), roomOf(edit), plainSizeOf(edit.text(), edit));
    text.isData = true;
    // What is selected has two colours of the desktop's.
    text.isDim |= edit.hasSelectedText();
    // The path of a file scrolls.
    if (edit.text().size() > 3)
        text.needed = {};
    texts << text;
}

void add(Texts& texts, const QProgressBar& bar)
{
    if (bar.isTextVisible())
        texts << placed(bar, bar.text(), bar.rect(), plainSizeOf(bar.text(), bar));
}

// --- views

// The digits of a cell need less than the height of its font, which may be cut by a pixel or two.
QSize cellSizeOf(const QString& text, const QWidget& view)
{
    const QSize size = plainSizeOf(text, view);
    const int leading = view.fontMetrics().height() - view.fontMetrics().capHeight();
    return {size.width(), size.height() - leading / 2};
}

// A long word may stand in the margins of the room.
QSize wrappedSizeOf(const QString& text, const QHeaderView& header, const QRect& room)
{
    int width = 0;
    for (const QString& word : text.split(QLatin1Char(' ')))
        width = qMax(width, header.fontMetrics().tightBoundingRect(word).width());
    const int flags = int{Qt::TextWordWrap} | int{Qt::AlignCenter};
    return {width, header.fontMetrics().boundingRect(room, flags, text).height()};
}

void add(Texts& texts, const QHeaderView& header)
{
    const int margin = 2 * header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
    const bool isWide = header.orientation() == Qt::Horizontal;
    for (int section = 0; section < header.count(); ++section) {
        if (header.isSectionHidden(section))
            continue;
        const QString text = header.model()->headerData(section, header.orientation()).toString();
        const int start = header.sectionViewportPosition(section);
        const int length = header.sectionSize(section);
        const QRect room = isWide ? QRect(start, 0, length, header.height())
                                  : QRect(0, start, header.width(), length);
        const int alignment = header.model()
                                  ->headerData(section, header.orientation(), Qt::TextAlignmentRole)
                                  .toInt();
        QSize needed = plainSizeOf(text, header) + QSize(margin, 0);
        if ((alignment & Qt::TextWordWrap) != 0)
            needed = wrappedSizeOf(text, header, room.adjusted(margin / 2, 0, -margin / 2, 0));
        ShownText shown = centered(header, text, room, needed);
        shown.isDim = !header.isEnabled();
        texts << shown;
    }
}

void add(Texts& texts, const QAbstractItemView& view)
{
    const QAbstractItemModel* model = view.model();
    if (!model || qobject_cast<const QHeaderView*>(&view))
        return;
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex index = model->index(row, column);
            const QRect cell = view.visualRect(index);
            const QString cellText = index.data().toString();
            ShownText text = centered(view, cellText, cell, cellSizeOf(cellText, view));
            if (!view.viewport()->rect().contains(cell))
                text.place = {};
            texts << text;
        }
    }
}

void add(Texts& texts, const QGraphicsView& view)
{
    for (const QGraphicsItem* item : view.items()) {
        if (!item->toolTip().isEmpty())
            texts << unplaced(view, item->toolTip());
    }
}

void add(Texts& texts, const QTabBar& tabs)
{
    for (int tab = 0; tab < tabs.count(); ++tab) {
        texts << centered(tabs, tabs.tabText(tab), tabs.tabRect(tab),
                          sizeOf(tabs.tabText(tab), tabs));
        texts << unplaced(tabs, tabs.tabToolTip(tab));
    }
}

// --- bars and menus

void addActions(Texts& texts, const QWidget& owner)
{
    for (const QAction* action : owner.actions()) {
        if (!action->isVisible() || action->isSeparator())
            continue;
        texts << unplaced(owner, action->text().section('\t', 0, 0))
              << unplaced(owner, action->toolTip().section('\t', 0, 0))
              << unplaced(owner, action->statusTip())
              << unplaced(owner, action->iconText().section('\t', 0, 0));
    }
}

void add(Texts& texts, const QMenu& menu)
{
    for (QAction* action : menu.actions()) {
        if (!action->isVisible() || action->isSeparator())
            continue;
        texts << placed(menu, action->text().section('\t', 0, 0), menu.actionGeometry(action),
                        sizeOf(action->text().section('\t', 0, 0), menu));
        texts.last().isDim = !action->isEnabled();
    }
}

void add(Texts& texts, const QMenuBar& bar)
{
    for (QAction* action : bar.actions())
        texts << placed(bar, action->text(), bar.actionGeometry(action),
                        sizeOf(action->text(), bar));
}

void add(Texts& texts, const QStatusBar& bar)
{
    int room = bar.width() - 6;
    for (const QObject* child : bar.children()) {
        const auto* part = qobject_cast<const QWidget*>(child);
        if (part && part->isVisible() && !part->inherits("QSizeGrip"))
            room = qMin(room, part->x() - 6);
    }
    texts << placed(bar, bar.currentMessage(), QRect(6, 0, room, bar.height()),
                    plainSizeOf(bar.currentMessage(), bar));
}

// Between the margin at the left and the buttons at the right; one that floats has the desktop's.
QRect titleRoomOf(const QDockWidget& dock)
{
    QStyleOptionDockWidget option;
    option.initFrom(&dock);
    option.closable = dock.features().testFlag(QDockWidget::DockWidgetClosable);
    option.floatable = dock.features().testFlag(QDockWidget::DockWidgetFloatable);
    option.rect = QRect(0, 0, dock.width(), dock.widget()->y());
    return dock.style()->subElementRect(QStyle::SE_DockWidgetTitleBarText, &option, &dock);
}

void add(Texts& texts, const QDockWidget& dock)
{
    const QString title = dock.windowTitle().remove(QLatin1Char('&'));
    if (dock.isFloating())
        texts << unplaced(dock, title);
    else if (!dock.titleBarWidget())
        texts << placed(dock, title, titleRoomOf(dock), plainSizeOf(title, dock));
}

template<typename Part>
bool addAs(Texts& texts, const QWidget& part)
{
    const auto* known = qobject_cast<const Part*>(&part);
    if (known)
        add(texts, *known);
    return known;
}

template<typename... Parts>
void addAsFirstOf(Texts& texts, const QWidget& part)
{
    (addAs<Parts>(texts, part) || ...);
}

bool isInsideOfField(const QWidget& part)
{
    const QWidget* parent = part.parentWidget();
    return qobject_cast<const QLineEdit*>(&part) &&
           (qobject_cast<const QAbstractSpinBox*>(parent) ||
            qobject_cast<const QComboBox*>(parent));
}

void addPart(Texts& texts, const QWidget& part)
{
    texts << unplaced(part, part.toolTip()) << unplaced(part, part.statusTip())
          << unplaced(part, part.accessibleName()) << unplaced(part, part.accessibleDescription());
    if (part.isWindow() || part.inherits("QMdiSubWindow"))
        texts << unplaced(part, part.windowTitle());
    if (!isInsideOfField(part))
        addAsFirstOf<QLabel, QAbstractButton, QGroupBox, QComboBox, QAbstractSpinBox, QLineEdit,
                     QProgressBar, QHeaderView, QAbstractItemView, QGraphicsView, QTabBar, QMenu,
                     QMenuBar, QStatusBar, QDockWidget>(texts, part);
    addActions(texts, part);
}

} // namespace

QVector<ShownText> shownTexts(QWidget& window)
{
    Texts texts;
    addPart(texts, window);
    for (const QWidget* part : window.findChildren<QWidget*>()) {
        if (part->isVisibleTo(&window) && part->window() == &window)
            addPart(texts, *part);
    }
    texts.erase(std::remove_if(texts.begin(), texts.end(),
                               [](const ShownText& text) { return text.text.isEmpty(); }),
                texts.end());
    return texts;
}
