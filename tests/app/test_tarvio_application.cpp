#include "app/OrvgOpenXmlSettingsDialog.h"
#include "app/SettingsFileCommands.h"
#include "app/TarvioApplication.h"
#include "tests/support/MessageBoxWatcher.h"
#include "tests/support/modal_dialogs.h"

#include <QFileDialog>
#include <QIcon>
#include <QPushButton>
#include <QTemporaryFile>
#include <QTimer>
#include <QWindow>
#include <QtTest>

#include <stdexcept>
#include <unistd.h>

namespace {

/// Keeps what is written to standard error for as long as it lives.
class CapturedStandardError
{
public:
    CapturedStandardError() : mFormer(::dup(STDERR_FILENO))
    {
        if (!mFile.open() || ::dup2(mFile.handle(), STDERR_FILENO) < 0)
            qFatal("standard error cannot be kept");
    }
    ~CapturedStandardError()
    {
        ::dup2(mFormer, STDERR_FILENO);
        ::close(mFormer);
    }
    CapturedStandardError(const CapturedStandardError&) = delete;
    CapturedStandardError& operator=(const CapturedStandardError&) = delete;

    QByteArray text()
    {
        mFile.seek(0);
        return mFile.readAll();
    }

private:
    QTemporaryFile mFile;
    int mFormer;
};

TarvioApplication& application()
{
    return *static_cast<TarvioApplication*>(qApp);
}

QImage picture(const QIcon& icon)
{
    return icon.pixmap(32).toImage();
}

bool carriesTheIcon(const QWidget& dialog)
{
    const QImage wave = picture(QIcon(QStringLiteral(":/icons/icons/wave.png")));
    return !wave.isNull() && picture(dialog.windowIcon()) == wave &&
           picture(dialog.windowHandle()->icon()) == wave;
}

} // namespace

class TestTarvioApplication : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void dialogsWithoutAParentCarryTheIcon();
    void fileDialogsCarryTheIcon();
    void statusOfTheProgramIsItsOwn();
    void errorWhileStartingIsTold();
    void errorInASlotIsTold();
    void errorBeforeTheEventLoopIsTold();
    void errorInADialogEndsTheDialogToo();
    void errorsThatFollowDoNotCloseTheBox();
    void whatIsNoExceptionIsToldAsWell();

private:
    void verifyTold(const std::function<int()>& program, const QString& reason);
};

void TestTarvioApplication::dialogsWithoutAParentCarryTheIcon()
{
    bool hasIcon = false;
    whenOpened<OrvgOpenXmlSettingsDialog>(this, [&hasIcon](OrvgOpenXmlSettingsDialog& dialog) {
        hasIcon = !dialog.parent() && carriesTheIcon(dialog);
        dialog.reject();
    });
    SettingsFileCommands(SettingsFile({}), nullptr).importSettings();
    QVERIFY(hasIcon);
}

void TestTarvioApplication::fileDialogsCarryTheIcon()
{
    int withIcon = 0;
    const auto look = [&withIcon](QFileDialog& dialog) {
        withIcon += carriesTheIcon(dialog) ? 1 : 0;
        dialog.reject();
    };
    whenOpened<QFileDialog>(this, look);
    SettingsFileCommands(SettingsFile({}), nullptr).exportSettings();
    whenOpened<QFileDialog>(this, look);
    OrvgOpenXmlSettingsDialog().findChild<QPushButton*>("mBrowseButton")->click();
    QCOMPARE(withIcon, 2);
}

void TestTarvioApplication::statusOfTheProgramIsItsOwn()
{
    const MessageBoxWatcher watcher;
    QCOMPARE(application().run([] { return 7; }), 7);
    QCOMPARE(application().run([] {
        QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(3); });
        return QApplication::exec();
    }),
             3);
    QVERIFY(watcher.boxes().isEmpty());
}

void TestTarvioApplication::verifyTold(const std::function<int()>& program, const QString& reason)
{
    QString text;
    whenOpened<QMessageBox>(this, [&text](QMessageBox& box) {
        text = box.windowTitle() + ": " + box.text();
        // It stays until the user closes it.
        QTimer::singleShot(20, &box, [&text, &box] {
            text += " [read]";
            box.accept();
        });
    });
    CapturedStandardError standardError;
    QCOMPARE(application().run(program), 1);
    QCOMPARE(standardError.text(), "tarvio: " + reason.toUtf8() + '\n');
    QCOMPARE(text, QStringLiteral("Tarvio: An unexpected error has ended the program:\n%1 [read]")
                       .arg(reason));
}

void TestTarvioApplication::errorWhileStartingIsTold()
{
    verifyTold([]() -> int { throw std::bad_alloc(); }, QStringLiteral("std::bad_alloc"));
}

void TestTarvioApplication::errorInASlotIsTold()
{
    verifyTold(
        [] {
            QTimer::singleShot(0, qApp, [] { throw std::runtime_error("in a slot"); });
            return QApplication::exec();
        },
        QStringLiteral("in a slot"));
}

void TestTarvioApplication::errorBeforeTheEventLoopIsTold()
{
    verifyTold(
        [] {
            QTimer::singleShot(0, qApp, [] { throw std::runtime_error("before"); });
            QCoreApplication::processEvents();
            return QApplication::exec();
        },
        QStringLiteral("before"));
}

void TestTarvioApplication::errorInADialogEndsTheDialogToo()
{
    verifyTold(
        [] {
            QTimer::singleShot(0, qApp, [] {
                QTimer::singleShot(0, qApp, [] { throw std::runtime_error("in a dialog"); });
                QDialog().exec();
            });
            return QApplication::exec();
        },
        QStringLiteral("in a dialog"));
}

void TestTarvioApplication::errorsThatFollowDoNotCloseTheBox()
{
    QTimer timer;
    int thrown = 0;
    connect(&timer, &QTimer::timeout, this, [&thrown] {
        ++thrown;
        throw std::runtime_error("again and again");
    });
    verifyTold(
        [&timer] {
            timer.start(0);
            return QApplication::exec();
        },
        QStringLiteral("again and again"));
    QVERIFY(thrown > 1);
}

void TestTarvioApplication::whatIsNoExceptionIsToldAsWell()
{
    verifyTold([]() -> int { throw 7; }, QStringLiteral("no reason given"));
}

int main(int argc, char* argv[])
{
    TarvioApplication app(argc, argv);
    TestTarvioApplication test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_tarvio_application.moc"
