#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"

#include <QString>

#include <array>

/// The rows of the file dialog's choices. Texts are untranslated, for the context "frmFileDialog".

struct FileType {
    const char *text;
    const char *extensions; ///< each between ";"; null: any
    const char *startPattern; ///< the files shown when the start name chose the row
    const char *pickedPattern; ///< the files shown when the user picked it
};
constexpr int fileTypeCount = 7;
constexpr int allFilesRow = 6;
extern const std::array<FileType, fileTypeCount> fileTypes;

/// The row for a file name, by its last extension in any case; allFilesRow where no row has it.
int fileTypeRow(const QString &fileName);

/// The codes and line ends, below a first row that chooses none.
inline constexpr std::array charCodeChoices{ CharCode::ShiftJis, CharCode::Euc, CharCode::Jis,
    CharCode::Utf8 };
inline constexpr std::array returnCodeChoices{ ReturnCode::CrLf, ReturnCode::Lf, ReturnCode::Cr };

/// Whether no file may have this name because of a character that some file system has another use for.
bool hasForbiddenCharacter(const QString &fileName);
