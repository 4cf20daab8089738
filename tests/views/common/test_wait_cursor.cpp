#include "views/common/WaitCursor.h"

#include <QApplication>
#include <QCursor>
#include <QtTest>

#include <stdexcept>

class WaitCursorTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::overrideCursor(), nullptr); }

    void showsWhileItLives()
    {
        const WaitCursor cursor;
        QVERIFY(QApplication::overrideCursor());
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }

    void innerOneLeavesTheOuterOneShowing()
    {
        const WaitCursor outer;
        {
            const WaitCursor inner;
        }
        QVERIFY(QApplication::overrideCursor());
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }

    void endsWithAnException()
    {
        try {
            const WaitCursor cursor;
            throw std::runtime_error("Invalid socket pointer");
        } catch (const std::runtime_error&) {
            QCOMPARE(QApplication::overrideCursor(), nullptr);
        }
    }

    void uncoversTheCursorThatWasThereBefore()
    {
        QApplication::setOverrideCursor(Qt::CrossCursor);
        {
            const WaitCursor cursor;
        }
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
        QApplication::restoreOverrideCursor();
    }
};

QTEST_MAIN(WaitCursorTest)
#include "test_wait_cursor.moc"
