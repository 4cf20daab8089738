#include "tests/app/scenes/accessibility_faults.h"
#include "tests/app/scenes/contrast_faults.h"
#include "tests/app/scenes/layout_faults.h"
#include "tests/support/Palettes.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

// As where it was asked for too early, before it was more than a plain widget.
QAccessibleInterface* plainWidget(const QString&, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    return widget ? new QAccessibleWidget(widget) : nullptr;
}

} // namespace

/// What the scenes are searched for, where it is known to be.
class TestSceneFaults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { mWindow.reset(); }

    void soundWindowHasNone();
    void cutTextIsFound_data();
    void cutTextIsFound();
    void partsAboveEachOtherAreFound();
    void blurredIconIsFound();
    void paleTextIsFound();
    void paleLineOfATextIsFound();
    void paleIconIsFound();
    void namelessPartIsFound();
    void unknownKindIsFound();
    void sharedMnemonicIsFound();
    void unreachablePartIsFound();
    void leapingFocusIsFound();

private:
    void show();
    QStringList allFaults();

    std::unique_ptr<QWidget> mWindow;
    QVBoxLayout* mLayout = nullptr; // of the window
    QLabel* mLabel = nullptr;       // in it
    QToolButton* mButton = nullptr; // in it
    QLineEdit* mEdit = nullptr;     // in it
};

void TestSceneFaults::init()
{
    QApplication::setPalette(lightPalette());
    mWindow = std::make_unique<QWidget>();
    mLayout = new QVBoxLayout(mWindow.get());
    mLabel = new QLabel(QStringLiteral("A &label"));
    mButton = new QToolButton;
    mButton->setText(QStringLiteral("..."));
    mButton->setAccessibleName(QStringLiteral("more"));
    mEdit = new QLineEdit;
    mEdit->setAccessibleName(QStringLiteral("an edit"));
    mLabel->setBuddy(mEdit);
    mLayout->addWidget(mLabel);
    mLayout->addWidget(mButton);
    mLayout->addWidget(mEdit);
}

void TestSceneFaults::show()
{
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(mWindow.get()));
}

QStringList TestSceneFaults::allFaults()
{
    show();
    const QImage picture = mWindow->grab().toImage();
    return cutTexts(*mWindow) + overlaps(*mWindow) + blurredIcons(*mWindow) +
           paleTexts(*mWindow, picture) + paleIcons(*mWindow, picture) + namelessParts(*mWindow) +
           sharedMnemonics(*mWindow) + tabFaults(*mWindow);
}

void TestSceneFaults::soundWindowHasNone()
{
    QCOMPARE(allFaults(), QStringList());
}

void TestSceneFaults::cutTextIsFound_data()
{
    QTest::addColumn<QWidget*>("part");
    const auto row = [](const char* name, QWidget* part) { QTest::newRow(name) << part; };
    row("label", new QLabel("A long text"));
    row("push button", new QPushButton("A long text"));
    row("tool button", [] {
        auto* button = new QToolButton;
        button->setText("A long text");
        return button;
    }());
    row("check box", new QCheckBox("A long text"));
    row("group box", new QGroupBox("A long text"));
}

void TestSceneFaults::cutTextIsFound()
{
    QFETCH(QWidget*, part);
    mLayout->addWidget(part);
    part->setFixedWidth(30);
    show();
    QVERIFY(!cutTexts(*mWindow).isEmpty());
}

void TestSceneFaults::partsAboveEachOtherAreFound()
{
    show();
    mLabel->setGeometry(mButton->geometry());
    QCOMPARE(overlaps(*mWindow).size(), 1);
}

void TestSceneFaults::blurredIconIsFound()
{
    QPixmap icon(8, 8);
    icon.fill(Qt::black);
    mButton->setIcon(icon);
    mButton->setIconSize(QSize(24, 24));
    show();
    QCOMPARE(blurredIcons(*mWindow).size(), 1);
}

void TestSceneFaults::paleTextIsFound()
{
    QPalette palette;
    palette.setColor(QPalette::WindowText, QColor(150, 150, 150));
    mLabel->setPalette(palette);
    show();
    QCOMPARE(paleTexts(*mWindow, mWindow->grab().toImage()).size(), 1);
}

void TestSceneFaults::paleLineOfATextIsFound()
{
    mLabel->setText("<p>A line</p><p><span style=\"color: #bbbbbb\">Another line</span></p>");
    show();
    QCOMPARE(paleTexts(*mWindow, mWindow->grab().toImage()).size(), 1);
}

void TestSceneFaults::paleIconIsFound()
{
    QPixmap icon(24, 24);
    icon.fill(QColor(200, 200, 200));
    mButton->setIcon(icon);
    show();
    QCOMPARE(paleIcons(*mWindow, mWindow->grab().toImage()).size(), 1);
}

void TestSceneFaults::namelessPartIsFound()
{
    mButton->setAccessibleName({});
    mButton->setText({});
    show();
    QCOMPARE(namelessParts(*mWindow).size(), 1);
}

void TestSceneFaults::unknownKindIsFound()
{
    QAccessible::installFactory(plainWidget);
    mLayout->addWidget(new QCheckBox("Check"));
    show();
    QVERIFY(namelessParts(*mWindow).join('\n').contains("QCheckBox"));
    QAccessible::removeFactory(plainWidget);
}

void TestSceneFaults::sharedMnemonicIsFound()
{
    mButton->setText("&Less");
    show();
    QCOMPARE(sharedMnemonics(*mWindow).size(), 1);
    QMenu menu;
    menu.addAction("&One");
    menu.addAction("An&other");
    QCOMPARE(sharedMnemonics(menu).size(), 1);
}

void TestSceneFaults::unreachablePartIsFound()
{
    // Swallows the Tab key.
    class Trap : public QLineEdit
    {
    protected:
        bool focusNextPrevChild(bool) override { return true; }
    };
    auto* trap = new Trap;
    mLayout->insertWidget(0, trap);
    show();
    trap->setFocus();
    QVERIFY(!tabFaults(*mWindow).isEmpty());
}

void TestSceneFaults::leapingFocusIsFound()
{
    auto* last = new QLineEdit;
    auto* lastButOne = new QLineEdit;
    mLayout->addWidget(lastButOne);
    mLayout->addWidget(last);
    QWidget::setTabOrder(mButton, last);
    QWidget::setTabOrder(last, mEdit);
    QWidget::setTabOrder(mEdit, lastButOne);
    show();
    QVERIFY(!tabFaults(*mWindow).isEmpty());
}

QTEST_MAIN(TestSceneFaults)
#include "test_scene_faults.moc"
