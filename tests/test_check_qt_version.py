#!/usr/bin/env python3
import pathlib
import tempfile
import unittest

import check_qt_version

ASKS = "#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)\n#endif\n"


def wrong_with(files):
    """What is wrong with a tree of these files, in which the one place asks."""
    with tempfile.TemporaryDirectory() as folder:
        for place, text in {"ecu/qt_compatibility.h": ASKS, **files}.items():
            file = pathlib.Path(folder) / place
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        return check_qt_version.check(pathlib.Path(folder))


class CheckQtVersion(unittest.TestCase):
    def test_the_one_place_may_ask(self):
        self.assertEqual(wrong_with({"views/plot/X.cpp": "#include <QWidget>\n"}), [])

    def test_no_other_may(self):
        self.assertEqual(wrong_with({"views/plot/X.cpp": "#pragma once\n" + ASKS}),
                         ["views/plot/X.cpp:2: asks for Qt's version, which ecu/qt_compatibility.h does for all"])

    def test_no_room_may(self):
        for folder in check_qt_version.FOLDERS:
            self.assertEqual(len(wrong_with({f"{folder}/x.h": ASKS})), 1, folder)

    def test_every_way_to_ask_is_seen(self):
        for text in ("#ifdef QT_VERSION_MAJOR\n", "  #  if QT_VERSION_MAJOR == 6\n",
                     "#if X\n#elif QT_VERSION > 0x060000\n", "#if defined(X) && QT_DEPRECATED_SINCE(5, 15)\n"):
            self.assertEqual(len(wrong_with({"app/main.cpp": text})), 1, text)

    def test_question_may_go_over_several_lines(self):
        text = "int x;\n#if defined(X) && \\\n    defined(Y) && \\\n    QT_VERSION < 6\n#endif\n" + ASKS
        self.assertEqual([line.split(":")[1] for line in wrong_with({"app/main.cpp": text})], ["2", "6"])

    def test_naming_the_version_is_not_asking(self):
        text = "// #if QT_VERSION\nauto text = QT_VERSION_STR;\n#if X\nint y = QT_VERSION;\n#endif\n"
        self.assertEqual(wrong_with({"app/main.cpp": text}), [])

    def test_one_place_that_asks_no_longer_is_told(self):
        self.assertEqual(len(wrong_with({"ecu/qt_compatibility.h": "#pragma once\n"})), 1)


if __name__ == "__main__":
    unittest.main()
