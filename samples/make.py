#!/usr/bin/env python3
"""Writes the sample texts of this folder: one text in every character code and line end the editor knows.

    make.py [FOLDER]     into that folder instead

Run it after changing the text; the files are committed so that a checkout can be tried at once.
"""

import pathlib
import sys

TEXT = """\
Marlo!Pad QT  見本の文書 (sample text)
\tタブで始まる行です。 A line that begins with a tab.
　全角の空白で始まる行です。「」、。・ー
半角カナ: ﾏｰﾛｰﾊﾟｯﾄﾞ  記号: ①②③ ㍻ 〜 － ∥ ￠ ￡
四角い文字: 表示 能力 予定 ソート 十字 貼り付け
ASCII: !"#$%&'()*+,-./ 0123456789 :;<=>?@ [\\]^_` {|}~

The line above is empty but for its end.
最後の行"""

# Those characters have no place in plain JIS and EUC files of other systems.
PLAIN = TEXT.replace("①②③ ㍻", "○△□ 平成").replace("〜 － ∥ ￠ ￡", "☆★→←↑↓")

# Line ends and zero bytes of a UTF-16 file are rewritten byte by byte before it is decoded, so only a text whose
# characters hold none of those bytes comes through as it is.
WIDE = "二千二十六年、見本の文書。『日本語だけの行です』、全部の文字が読めますか？"

SAMPLES = {
    "shift-jis-crlf.txt": (TEXT.replace("〜", "～"), "cp932", "\r\n"),
    "euc-lf.txt": (PLAIN, "euc_jp", "\n"),
    "jis-lf.txt": (PLAIN, "iso2022_jp_ext", "\n"),
    "utf-8-lf.txt": (TEXT + "  日本語、English、français", "utf-8", "\n"),
    "utf-8-mark-crlf.txt": (TEXT, "utf-8-sig", "\r\n"),
    "utf-16.txt": (WIDE, "utf-16", ""),
    "shift-jis-cr.txt": (PLAIN, "shift_jis", "\r"),
    "ascii.txt": ("Plain ASCII on one line: no line end, no control character.", "ascii", "\n"),
    "french-utf-8-lf.txt": ("Où est passé l’été ? À Noël, bien sûr : « ça va ».\nŒuvre, cœur, naïveté.\n", "utf-8", "\n"),
}


def main():
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parent
    for name, (text, codec, line_end) in SAMPLES.items():
        (folder / name).write_bytes(text.replace("\n", line_end).encode(codec))


if __name__ == "__main__":
    main()
