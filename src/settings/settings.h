#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"

#include <QString>

#include <array>

struct FileCalls;

/// All settings of the program: one record for the process, read at start and written at the end, when what
/// other processes have written in between is taken over. Field names are the keys of group "main"; numbers
/// are stored as they are and checked where they are used.
struct AppSettings {
    int Lang = 1; ///< 0 English, 1 Japanese, 2 French
    int ShowKAI = 1; ///< signs of line ends
    int ShowTAB = 1; ///< signs of tabs
    int ShowZEN = 1; ///< signs of full-width spaces
    int ShowEOF = 1; ///< sign of the end of the file
    static constexpr int smallestFontSize = 10; ///< points; a smaller one is read as the usual one
    static constexpr int largestFontSize = 100; ///< that the options take
    int FontSize = 18; ///< points
    QString FontName = QStringLiteral("lcfont");
    int AutoIndent = 2; ///< 0 none, 1 tab and space, 2 tab, space and full-width space
    int WrapMode = 0; ///< 0 none, 1 at the editor's width, 2 at WrapLen columns
    int WrapLen = 30;
    int TabLen = 4;
    int RestoreScroll = 1; ///< put cursor and view back when a recent file is opened
    int RowNo = 1; ///< row numbers: 0 none, 1 small, 2 large
    int ActiveHLine = 8; ///< colour index of the active row's underline; 0 none
    int DefCodec = 3; ///< CharCode of an empty file
    int DefCRLF = 2; ///< ReturnCode of a file without a line end
    int BackColor = 2; ///< colour index
    int ForeColor = 1; ///< colour index
    int RowNoColor = 0; ///< colour index; 0 the text's colour
    int LangOffered = 0; ///< the languages were offered to the user of another one
    int CodecOffered = 0; ///< the desktop's code and line end were offered for new documents

    /// Whatever the file held: both tables say what a number stands for that is no code.
    CharCode defaultCharCode() const { return CharCode(DefCodec); }
    ReturnCode defaultReturnCode() const { return ReturnCode(DefCRLF); }
};

/// One row of the recent-files table. `cursorRow` is stored under "CurX", `cursorColumn` under "CurY": files
/// written by earlier versions have them so. The numbers are whatever the file held.
struct RecentEntry {
    QString path; ///< ends in "/"
    QString name;
    qint64 cursorRow = 0;
    qint64 cursorColumn = 0;
    qint64 scrollX = 0; ///< pixels
    qint64 scrollY = 0; ///< pixels

    bool operator==(const RecentEntry &) const = default;
    bool isUsed() const { return !path.isEmpty() && !name.isEmpty(); }
};

constexpr int recentEntryCount = 20;

/// The recent-files table, row 0 the most recent, and how many of its rows the menu shows.
struct RecentFiles {
    int RecentViewCnt = 10; ///< 0 to 15 as the options dialog has it; a file may hold any number
    std::array<RecentEntry, recentEntryCount> entries;
};

AppSettings &appSettings();
RecentFiles &recentFiles();

/// Fills the records, moreSettings() too, from the file "marlopad"; a missing file or key gives the default.
void readSettings();
/// Writes the records as they stand, after taking over what other processes have written to the file since
/// this one last read or wrote it: settings that were not changed here, and the files they closed; entries
/// that either side has cleared stay cleared. True when something was taken over. A file that cannot be
/// written is not reported.
bool writeSettings();
bool writeSettings(const FileCalls &calls);
