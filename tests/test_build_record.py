#!/usr/bin/env python3
"""usage: test_build_record.py SOURCE_FOLDER"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv.pop(1))


class BuildRecord(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)
        self.output = self.tree / "build_info.cpp"

    def git(self, *arguments):
        return subprocess.run(
            ["git", "-c", "user.name=a", "-c", "user.email=a@b", *arguments], cwd=self.tree,
            check=True, stdout=subprocess.PIPE, text=True).stdout.strip()

    def commit(self):
        self.git("commit", "--quiet", "--allow-empty", "--message", "change")
        return self.git("rev-parse", "--short=7", "HEAD")

    def written(self):
        subprocess.run(
            ["cmake", f"-DSOURCE_DIR={self.tree}", f"-DOUTPUT={self.output}",
             f"-DTEMPLATE={SOURCE}/orv_decoder/build_info.cpp.in", "-DCONFIGURATION=Release",
             "-DVERSION=1.2.3", "-P", f"{SOURCE}/cmake/WriteBuildRecord.cmake"], check=True)
        return self.output.read_text(encoding="utf-8")

    def test_record_follows_each_commit(self):
        self.git("init", "--quiet")
        for _ in range(2):
            commit_id = self.commit()
            text = self.written()
            self.assertIn(f'"orv_decoder_Release-1.2.3-{commit_id}-', text)
            self.assertIn(f'kCommitId = "{commit_id}"', text)

    def test_same_commit_leaves_the_file_alone(self):
        self.git("init", "--quiet")
        self.commit()
        self.written()
        before = self.output.stat().st_mtime_ns
        self.written()
        self.assertEqual(self.output.stat().st_mtime_ns, before)

    def test_tree_without_git_says_unknown(self):
        self.assertIn('kCommitId = "unknown"', self.written())


if __name__ == "__main__":
    unittest.main()
