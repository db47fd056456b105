#pragma once

#include "filedialog/locations.h"

#include <QString>

#include <array>

class QMenu;

constexpr int favoriteCount = 20;
using FavoriteTexts = std::array<QString, favoriteCount>;

/// Reads the favourite folders that the file explorer "corvex" keeps; its settings are never written. Slots
/// that are not there come back empty.
void readFavorites(FavoriteTexts &paths, FavoriteTexts &names);

/// Adds one entry per used slot, in order; the action's data is the slot's number. A path of "$sep$" adds a
/// separator.
void fillFavoritesMenu(
    QMenu *menu, const FavoriteTexts &paths, const FavoriteTexts &names, const Surroundings &surroundings);

/// Resource name of the picture of a favourite folder: the path is compared as it is stored.
QString favoriteIconName(const QString &path, const Surroundings &surroundings);
