// One thing that is done with a large file, without a window: bigfile load FILE, bigfile load16 FILE (as text
// in UTF-16, by its mark), bigfile save FILE COPY, or bigfile find FILE TEXT. Tells the seconds that it took
// and the most memory that the process had.

#include "document/textdocument.h"
#include "files/filename.h"
#include "text/textsearch.h"

#include <QElapsedTimer>

#include <cstdio>

#include <sys/resource.h>

namespace {

constexpr int halfWidth = 8;

/// As wide as in most fonts for Japanese.
int width(char32_t c)
{
    return int(subpixelsPerPixel) * (c < 0x80 || (c >= 0xFF61 && c <= 0xFF9F) ? halfWidth : 2 * halfWidth);
}

/// Folder and name.
std::pair<QString, QString> parted(const char *fileName)
{
    const QString whole = FileName::fromBytes(fileName);
    const qsizetype name = whole.lastIndexOf(u'/') + 1;
    return { whole.first(name), whole.sliced(name) };
}

bool load(TextDocument &document, const char *file)
{
    const auto [path, name] = parted(file);
    return !document.load(path, name, {}, {});
}

bool loadUtf16(TextDocument &document, const char *file)
{
    const auto [path, name] = parted(file);
    TextStore text;
    if (document.readUtf16(path, name, { false, true }, {}, text))
        return false;
    document.setText(std::move(text));
    return true;
}

bool save(TextDocument &document, const char *file)
{
    const auto [path, name] = parted(file);
    return document.save(path, name).outcome == SaveResult::Outcome::Written;
}

bool find(const TextDocument &document, const char *text)
{
    const TextPattern pattern(QString::fromUtf8(text), Qt::CaseSensitive);
    return findHit(document.store(), pattern, SearchDirection::Forward, {}).has_value();
}

void tell(const QElapsedTimer &timer)
{
    rusage used = {};
    getrusage(RUSAGE_SELF, &used);
    std::printf("%.3f %ld\n", double(timer.nsecsElapsed()) * 1e-9, used.ru_maxrss / 1024);
}

} // namespace

int main(int count, char **arguments)
{
    const QByteArrayView work(count > 2 ? arguments[1] : "");
    const bool isLoad = work == "load" || work == "load16";
    if (count != (isLoad ? 3 : 4) || !(isLoad || work == "save" || work == "find"))
        return 2;
    const AdvanceTable widths(width);
    TextDocument document;
    document.layOut({ &widths, 8 * halfWidth * subpixelsPerPixel, 640 * subpixelsPerPixel });
    QElapsedTimer timer;
    timer.start();
    bool isDone = work == "load16" ? loadUtf16(document, arguments[2]) : load(document, arguments[2]);
    if (isDone && !isLoad) {
        timer.start();
        isDone = work == "save" ? save(document, arguments[3]) : find(document, arguments[3]);
    }
    tell(timer);
    return isDone ? 0 : 1;
}
