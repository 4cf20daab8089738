#pragma once

#include "orv_decoder/OrvCtrlClient.h"
#include "tests/support/CursorWatchingSocket.h"

#include <QAbstractItemModelTester>
#include <QTableView>
#include <QToolButton>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <QtTest>

#include <string>
#include <utility>

/// An editor of the ECU's configuration with a scripted ECU, its parts found by their names.
/// @tparam View has one table, of a `Model`
template<typename View, typename Model>
class EditorFixture
{
public:
    /// The arguments are those of the view.
    template<typename... Arguments>
    explicit EditorFixture(Arguments&&... arguments) : view(std::forward<Arguments>(arguments)...)
    {
        view.setCtrlClient(&client);
    }

    template<typename Widget>
    Widget& part(const char* name)
    {
        return *view.template findChild<Widget*>(QLatin1String(name));
    }

    QTableView& table() { return *view.template findChild<QTableView*>(); }
    Model& model() { return static_cast<Model&>(*table().model()); }
    QToolButton& button(const char* name) { return part<QToolButton>(name); }
    void click(const char* name) { QTest::mouseClick(&button(name), Qt::LeftButton); }

    void setCurrent(int row, int column = 0)
    {
        table().setCurrentIndex(model().index(row, column));
    }

    /// Shows the cell; where its middle is in the table's viewport.
    QPoint middleOf(int row, int column)
    {
        view.show();
        const QModelIndex cell = model().index(row, column);
        table().scrollTo(cell);
        return table().visualRect(cell).center();
    }

    /// A double click as the window system delivers it.
    void doubleClick(int row, int column)
    {
        const QPoint middle = middleOf(row, column);
        QTest::mouseDClick(view.windowHandle(), Qt::LeftButton, {},
                           table().viewport()->mapTo(&view, middle));
    }

    /// A double click on the viewport, which leaves the button pressed.
    void pressTwice(int row, int column)
    {
        const QPoint middle = middleOf(row, column);
        QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, middle);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, middle);
    }

    /// What the view writes into this element of a settings file.
    QString section(const QString& element)
    {
        QString text;
        QXmlStreamWriter writer(&text);
        writer.writeStartElement(element);
        view.writeXml(writer);
        writer.writeEndElement();
        return text;
    }

    /// Why the view does not take this section; empty when it does.
    QString importError(const QString& section)
    {
        QXmlStreamReader reader(section);
        reader.readNextStartElement();
        std::string error;
        const bool isTaken = view.readFromXml(reader, error);
        return isTaken ? QString() : QString::fromStdString(error);
    }

    CursorWatchingSocket socket;
    orv::OrvCtrlClient client{&socket};
    View view;
    QAbstractItemModelTester tester{&model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};
