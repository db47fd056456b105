#include "filedialog/filechoices.h"

#include <QCoreApplication>

#include <algorithm>

constinit const std::array<FileType, fileTypeCount> fileTypes{ {
    { QT_TRANSLATE_NOOP("frmFileDialog", "text files (*.txt;..)"), ";txt;ini;log;", "*.txt;*.ini;*.log",
        "*.txt;*.ini;*.log" },
    { QT_TRANSLATE_NOOP("frmFileDialog", "Qtopia files (*.conf;..)"), ";conf;desktop;sh;types;",
        "*.conf;*.desktop;*.sh;*.types", "*.conf;*.desktop;*.sh;*.types" },
    // Picked, the row shows ".html" too; such a name does not choose it.
    { QT_TRANSLATE_NOOP("frmFileDialog", "HTML files (*.htm;js;..)"), ";htm;js;css;", "*.htm;*.js;*.css",
        "*.htm;*.html;*.js;*.css" },
    { QT_TRANSLATE_NOOP("frmFileDialog", "Web files (*.cgi;pl;..)"), ";cgi;pl;php;asp;cfm;",
        "*.cgi;*.pl;*.php;*.asp;*.cfm", "*.cgi;*.pl;*.php;*.asp;*.cfm" },
    { QT_TRANSLATE_NOOP("frmFileDialog", "C language (*.h;c;cpp;..)"), ";h;c;cpp;cs;pro;",
        "*.h;*.c;*.cpp;*.cs;*.pro", "*.h;*.c;*.cpp;*.cs;*.pro" },
    { QT_TRANSLATE_NOOP("frmFileDialog", "Java language (*.java;..)"), ";java;jsp;", "*.java;*.jsp",
        "*.java;*.jsp" },
    { QT_TRANSLATE_NOOP("frmFileDialog", "all files (*.*)"), nullptr, "*", "*" },
} };

int fileTypeRow(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    if (dot < 0)
        return allFilesRow;
    const QString extension = u';' + fileName.sliced(dot + 1) + u';';
    for (int row = 0; row < allFilesRow; ++row) {
        if (QLatin1StringView(fileTypes.at(size_t(row)).extensions).contains(extension, Qt::CaseInsensitive))
            return row;
    }
    return allFilesRow;
}

bool hasForbiddenCharacter(const QString &fileName)
{
    constexpr QStringView forbidden(u"/\\:,;*?\"<>|");
    return std::any_of(
        fileName.begin(), fileName.end(), [forbidden](QChar unit) { return forbidden.contains(unit); });
}
