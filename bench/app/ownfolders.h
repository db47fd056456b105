#pragma once

#include <QTemporaryDir>

/// Settings and state of a benchmark that opens windows: not those of who runs it, nor what another run has
/// left, which would be told in every window. To be made before the application.
class OwnFolders {
public:
    OwnFolders()
    {
        qputenv("XDG_CONFIG_HOME", m_folder.path().toUtf8());
        qputenv("XDG_STATE_HOME", m_folder.path().toUtf8());
    }

private:
    QTemporaryDir m_folder;
};
