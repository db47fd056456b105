#pragma once

class QUrl;

/// Has the desktop's program for folders show one. False where there is none, which nothing is written about:
/// it is for the caller to show the folder in another way.
bool showInFileManager(const QUrl &folder);
