#include "filedialog/ctlfilelistviewitem.h"

#include "filedialog/fileorder.h"
#include "platform/digitgrouping.h"

#include <QLatin1StringView>

#include <algorithm>
#include <array>

#include <sys/stat.h>

namespace {

/// Files below these have no emblem of executables.
constexpr std::array cardFolders{
    QLatin1StringView("/usr/mnt.rom/cf/"),
    QLatin1StringView("/usr/mnt.rom/card/"),
    QLatin1StringView("/mnt/cf/"),
    QLatin1StringView("/mnt/card/"),
    QLatin1StringView("/home/samba/CF_Card/"),
    QLatin1StringView("/home/samba/SD_Card/"),
};

bool isOnCard(const QString &path)
{
    return std::any_of(cardFolders.begin(), cardFolders.end(),
        [&path](QLatin1StringView folder) { return path.contains(folder); });
}

FileIcon iconOf(const FileEntry &entry, const Surroundings &surroundings)
{
    return entry.isFolder ? folderIcon(entry.filePath() + u'/', entry.linkTarget, surroundings)
                          : fileIconByName(entry.name);
}

QString sizeText(qint64 bytes)
{
    constexpr qint64 kilobyte = 1024;
    const qint64 kilobytes = bytes / kilobyte + (bytes % kilobyte != 0 ? 1 : 0);
    return ctlFileListViewItem::tr("%1 KB").arg(groupDigits(kilobytes));
}

QString dateText(const FileEntry &entry)
{
    const std::optional<std::tm> t = entry.localTime();
    if (!t)
        return {};
    return QString::asprintf(
        "%02d/%02d/%02d %02d:%02d", t->tm_year % 100, t->tm_mon + 1, t->tm_mday, t->tm_hour, t->tm_min);
}

} // namespace

ctlFileListViewItem::ctlFileListViewItem(FileEntry entry, const Surroundings &surroundings)
    : m_fileInfo(std::move(entry))
    , m_icon(iconOf(m_fileInfo, surroundings))
{
}

bool ctlFileListViewItem::isLocked() const
{
    return !isFolder() && (m_fileInfo.permissions & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

bool ctlFileListViewItem::isExec() const
{
    constexpr unsigned byOthers = S_IXGRP | S_IXOTH;
    const unsigned permissions = m_fileInfo.permissions;
    const bool mayRun = (permissions & S_IXUSR) != 0 || (permissions & byOthers) == byOthers;
    return mayRun && !isFolder() && !isOnCard(m_fileInfo.filePath());
}

QString ctlFileListViewItem::key(int column, bool /*ascending*/) const
{
    return sortKey(m_fileInfo, column);
}

QVariant ctlFileListViewItem::data(int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return text(column);
    case Qt::DecorationRole:
        return column == NameColumn ? filePicture(m_icon).icon : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignment(column));
    default:
        return {};
    }
}

Qt::Alignment ctlFileListViewItem::alignment(int column)
{
    constexpr std::array<Qt::Alignment, ColumnCount> alignments{
        Qt::AlignLeft | Qt::AlignVCenter,
        Qt::AlignRight | Qt::AlignVCenter,
        Qt::AlignCenter,
    };
    return alignments.at(size_t(column));
}

QString ctlFileListViewItem::text(int column) const
{
    switch (column) {
    case SizeColumn:
        return isFolder() ? tr("Folder") : sizeText(m_fileInfo.size);
    case DateColumn:
        return dateText(m_fileInfo);
    default:
        return m_fileInfo.name;
    }
}
