#!/usr/bin/env python3
import pathlib
import tempfile
import unittest

import check_includes


def violations(path, line):
    return list(check_includes.violations(path, "#pragma once\n" + line + "\n"))


class CheckIncludes(unittest.TestCase):
    def test_link_library_may_not_include_qt(self):
        for line in ("#include <QObject>", "#include <QtCore>", '#include "ui_X.h"',
                     "#  include <QtCore/QString>", "#include <qglobal.h>"):
            self.assertEqual(len(violations("orv_decoder/OrvDecoder.h", line)), 1, line)

    def test_metatypes_may_include_qt_but_no_view(self):
        self.assertEqual(violations("orv_decoder/metatypes.h", "#include <QMetaType>"), [])
        self.assertEqual(len(violations("orv_decoder/metatypes.h", '#include "views/x.h"')), 1)

    def test_link_library_may_include_nothing_above_it(self):
        for line in ('#include "views/x.h"', '#include "app/x.h"', '#include "ecu/link/x.h"'):
            self.assertEqual(len(violations("orv_decoder/ByteReader.cpp", line)), 1, line)

    def test_neither_view_nor_window_may_include_a_socket(self):
        for line in ('#include "orv_decoder/OrvCtrlSocket.h"', "#include <sys/socket.h>",
                     '#include "orv_decoder/OrvCtrlSocketBase.h"', "#include <QUdpSocket>"):
            self.assertEqual(len(violations("views/plot/PlotGeometry.cpp", line)), 1, line)
            self.assertEqual(len(violations("app/TarvioWindow.cpp", line)), 1, line)

    def test_tool_may_include_neither_views_nor_tests(self):
        for line in ('#include "views/x.h"', '#include "app/x.h"', '#include "tests/support/x.h"'):
            self.assertEqual(len(violations("tools/ecu_simulator/Scene.cpp", line)), 1, line)

    def test_ecu_may_include_neither_widgets_nor_views(self):
        for line in ('#include "views/x.h"', '#include "app/x.h"', "#include <QtWidgets/QWidget>",
                     "#include <QtGui>", '#include "ui_X.h"'):
            self.assertEqual(len(violations("ecu/link/EcuLink.cpp", line)), 1, line)
        self.assertEqual(violations("ecu/link/EcuLink.cpp", "#include <QtCore/QString>"), [])

    def test_views_may_not_include_app(self):
        self.assertEqual(violations("views/live/X.cpp", '#include "app/TarvioWindow.h"'),
                         ["views/live/X.cpp:2: includes app/TarvioWindow.h: "
                          "a view does not know the application"])

    def test_views_may_include_the_link_library_and_qt(self):
        for line in ('#include "orv_decoder/tables.h"', "#include <QWidget>", "#include <queue>"):
            self.assertEqual(violations("views/live/X.cpp", line), [])

    def test_no_program_code_may_include_tests(self):
        self.assertEqual(len(violations("app/main.cpp", '#include "tests/support/x.h"')), 1)

    def test_standard_headers_are_free(self):
        for line in ("#include <queue>", "#include <cstdint>", '#include "orv_decoder/Crc8.h"'):
            self.assertEqual(violations("orv_decoder/Crc8.cpp", line), [])

    def test_folder_without_sources_is_an_error(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(len(check_includes.check(pathlib.Path(folder))), 1)


if __name__ == "__main__":
    unittest.main()
