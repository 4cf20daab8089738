#!/usr/bin/python3
"""Makes one HTML site of the guide: of the pages that docs/user-guide/README.md lists, in its order,
and of whatever they link to.

usage: make_guide.py OUTPUT_FOLDER [--start README.md] [--version 1.2.3]

Fails, and names the page, where a link leads nowhere. Debian's interpreter has markdown_it.
"""
import argparse
import html
import pathlib
import shutil
import string
import sys
import urllib.parse

from guide_pages import GuideError, Page

HERE = pathlib.Path(__file__).resolve().parent


def path_name(path):
    """What a page is called: its file, or the folder that it describes."""
    return path.parent.name if path.name == "README.md" else path.stem


class Site:
    """The pages by the path of their source, and the other files that they show or link to."""

    def __init__(self, start):
        self.start = Page(start)
        self.groups = self.start.link_lists()
        self.pages = {self.start.path: self.start}
        self._files = {}
        self._collect()

    def _collect(self):
        listed = [self.start.sibling(link) for _, links in self.groups for link in links]
        waiting = [self.start.path, *listed]
        while waiting:
            path = waiting.pop(0)
            page = self.pages.setdefault(path, Page(path))
            for target in page.local_targets():
                if target.suffix != ".md":
                    self._keep_file(page, target)
                elif target not in self.pages and target not in waiting:
                    waiting.append(target)
        self._name_pages()

    def _keep_file(self, page, target):
        if not target.is_file():
            raise GuideError(f"{page.path}: links to {target}, which is not there")
        name = f"images/{target.name}" if target.suffix in (".png", ".svg") else target.name
        if self._files.setdefault(name, target) != target:
            raise GuideError(f"{target} and {self._files[name]} would both be {name}")

    def _name_pages(self):
        self._names = {}
        for path in self.pages:
            name = "index.html" if path == self.start.path else f"{path_name(path)}.html"
            if name in self._names.values():
                raise GuideError(f"two pages would be {name}: {path} is one of them")
            self._names[path] = name

    def address(self, page, link):
        """What a link of a page is in the site."""
        if urllib.parse.urlsplit(link).scheme:
            return link
        path, _, fragment = link.partition("#")
        target = page.sibling(path) if path else page.path
        if target not in self.pages:
            return next(name for name, file in self._files.items() if file == target)
        if fragment and fragment not in self.pages[target].anchors():
            raise GuideError(f"{page.path}: {target} has no heading #{fragment}")
        return self._names[target] + (f"#{fragment}" if fragment else "")

    def navigation(self):
        """(title of the group, its pages): as listed, then what the listed ones link to."""
        groups = [("", [self.start])]
        groups += [(title, [self.pages[self.start.sibling(link)] for link in links])
                   for title, links in self.groups]
        listed = {page.path for _, pages in groups for page in pages}
        others = [page for path, page in self.pages.items() if path not in listed]
        return groups + ([("More", others)] if others else [])

    def write(self, folder, version):
        template = string.Template((HERE / "page.html").read_text(encoding="utf-8"))
        shutil.rmtree(folder, ignore_errors=True)
        (folder / "images").mkdir(parents=True)
        shutil.copyfile(HERE / "style.css", folder / "style.css")
        for name, file in self._files.items():
            shutil.copyfile(file, folder / name)
        order = [page for _, pages in self.navigation() for page in pages]
        for index, page in enumerate(order):
            text = template.substitute(
                title=html.escape(page.title()), version=html.escape(version),
                content=page.html(lambda link, page=page: self.address(page, link)),
                navigation=self._navigation_html(page), around=self._around_html(order, index))
            (folder / self._names[page.path]).write_text(text, encoding="utf-8")

    def _navigation_html(self, current):
        parts = []
        for title, pages in self.navigation():
            if title:
                parts.append(f"<h2>{html.escape(title)}</h2>")
            items = "\n".join(self._item_html(page, page is current) for page in pages)
            parts.append(f"<ul>\n{items}\n</ul>")
        return "\n".join(parts)

    def _item_html(self, page, is_current):
        if not is_current:
            return f"<li>{self._link_html(page)}</li>"
        sections = "".join(f'<li><a href="#{anchor}">{html.escape(text)}</a></li>'
                           for anchor, text in page.sections())
        inner = f"<ul>{sections}</ul>" if sections else ""
        link = self._link_html(page, ' aria-current="page"')
        return f"<li>{link}{inner}</li>"

    def _link_html(self, page, attributes=""):
        return f'<a href="{self._names[page.path]}"{attributes}>{html.escape(page.title())}</a>'

    def _around_html(self, order, index):
        before = self._link_html(order[index - 1], ' rel="prev"') if index else ""
        after = self._link_html(order[index + 1], ' rel="next"') if index + 1 < len(order) else ""
        return f"<span>{before}</span>\n<span>{after}</span>"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("output", type=pathlib.Path)
    parser.add_argument("--start", type=pathlib.Path,
                        default=HERE.parent / "user-guide" / "README.md")
    parser.add_argument("--version", default="")
    arguments = parser.parse_args()
    try:
        Site(arguments.start.resolve()).write(arguments.output, arguments.version)
    except GuideError as error:
        sys.exit(f"make_guide: {error}")


if __name__ == "__main__":
    main()
