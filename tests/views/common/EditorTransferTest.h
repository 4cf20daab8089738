#pragma once

#include "tests/support/MessageBoxWatcher.h"

#include <QApplication>
#include <QtTest>

#include <cstdint>
#include <memory>
#include <vector>

/// The base of the tests of an editor's transfers: the editor, a scripted ECU, and the boxes that
/// open meanwhile, which are answered with Yes. The tests call setUp() in init() and tearDown() in
/// cleanup().
template<typename Fixture>
class EditorTransferTest : public QObject
{
protected:
    void setUp()
    {
        mFixture = std::make_unique<Fixture>();
        mBoxes = std::make_unique<MessageBoxWatcher>(QMessageBox::Yes);
    }

    void tearDown()
    {
        mBoxes.reset();
        mFixture.reset();
        QVERIFY(!QApplication::overrideCursor());
    }

    const std::vector<std::vector<std::uint8_t>>& requests() const
    {
        return mFixture->socket.requests();
    }

    void expectOneBox(QMessageBox::Icon icon, const QString& title, const QString& text) const
    {
        QCOMPARE(mBoxes->boxes().size(), 1);
        expectBox(mBoxes->boxes().first(), icon, title, text);
    }

    /// The box of a failure, the only one or behind the question.
    void expectError(const QString& text) const
    {
        QVERIFY(!mBoxes->boxes().isEmpty());
        expectBox(mBoxes->boxes().last(), QMessageBox::Warning, "Communication error", text);
        QCOMPARE(mBoxes->boxes().last().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    }

    std::unique_ptr<Fixture> mFixture;
    std::unique_ptr<MessageBoxWatcher> mBoxes;

private:
    static void expectBox(const MessageBoxWatcher::Box& box, QMessageBox::Icon icon,
                          const QString& title, const QString& text)
    {
        QCOMPARE(box.icon, icon);
        QCOMPARE(box.title, title);
        QCOMPARE(box.text, text);
    }
};
