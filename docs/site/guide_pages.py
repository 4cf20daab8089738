"""A page of the guide: what its Markdown says, and how it becomes HTML."""
import copy
import pathlib
import re
import urllib.parse

from markdown_it import MarkdownIt
from markdown_it.token import Token


class GuideError(Exception):
    """What keeps the site from being made, as a sentence."""


def anchor_of(text, taken):
    """The anchor of a heading, as code hosts make it; `taken` are those of the page so far."""
    plain = re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")
    anchor = plain
    number = 0
    while anchor in taken:
        number += 1
        anchor = f"{plain}-{number}"
    return anchor


def plain_text(inline):
    return "".join(child.content for child in inline.children if child.type in ("text", "code_inline"))


class Page:
    """One Markdown file, read once."""

    def __init__(self, path):
        self.path = path
        self._parser = MarkdownIt("commonmark", {"html": False}).enable("table")
        try:
            self._tokens = self._parser.parse(path.read_text(encoding="utf-8"))
        except FileNotFoundError:
            raise GuideError(f"{path} is linked to, but not there") from None
        self._headings = self._name_headings()

    def _name_headings(self):
        headings = []
        taken = set()
        for token, inline in zip(self._tokens, self._tokens[1:]):
            if token.type == "heading_open":
                anchor = anchor_of(plain_text(inline), taken)
                taken.add(anchor)
                token.attrSet("id", anchor)
                headings.append((token.tag, anchor, plain_text(inline)))
        return headings

    def title(self):
        for tag, _, text in self._headings:
            if tag == "h1":
                return text
        raise GuideError(f"{self.path}: has no title")

    def anchors(self):
        return {anchor for _, anchor, _ in self._headings}

    def sections(self):
        """(anchor, text) of the headings below the title."""
        return [(anchor, text) for tag, anchor, text in self._headings if tag == "h2"]

    def sibling(self, link):
        """The file that a relative link leads to."""
        return (self.path.parent / urllib.parse.unquote(link.partition("#")[0])).resolve()

    def local_targets(self):
        """The files that the page shows or links to."""
        for child in self._inlines(self._tokens):
            link = child.attrGet("href") or child.attrGet("src") or ""
            if link and not link.startswith("#") and not urllib.parse.urlsplit(link).scheme:
                yield self.sibling(link)

    def link_lists(self):
        """(heading, links) of every list whose items begin with a link to another page."""
        lists = []
        heading = ""
        for before, token in zip(self._tokens, self._tokens[1:]):
            if before.type == "heading_open" and before.tag != "h1":
                heading = plain_text(token)
            link = self._leading_link(token)
            if link is None or before.type != "paragraph_open" or before.level < 2:
                continue
            if not lists or lists[-1][0] != heading:
                lists.append((heading, []))
            lists[-1][1].append(link)
        return lists

    @staticmethod
    def _leading_link(token):
        if token.type != "inline" or not token.children or token.children[0].type != "link_open":
            return None
        link = token.children[0].attrGet("href")
        return link if pathlib.PurePosixPath(link.partition("#")[0]).suffix == ".md" else None

    @staticmethod
    def _inlines(tokens):
        for token in tokens:
            yield from token.children or []

    def html(self, address):
        """The content; `address` says what each link of the page is in the site."""
        tokens = []
        for token in copy.deepcopy(self._tokens):
            if token.type == "table_open":  # wider than a small screen, it scrolls alone
                tokens.append(Token("html_block", "", 0, content='<div class="table">\n'))
            tokens.append(token)
            if token.type == "table_close":
                tokens.append(Token("html_block", "", 0, content="</div>\n"))
        for child in self._inlines(tokens):
            for attribute in ("href", "src"):
                if child.attrGet(attribute):
                    child.attrSet(attribute, address(child.attrGet(attribute)))
        return self._parser.renderer.render(tokens, self._parser.options, {})
