#pragma once
#include <QDir>
#include <QString>

/** Takes pictures of everything that is on the screen, as a person before it would see it. */
class camera {
public:
    explicit camera(const QString& folder);

    bool usable() const;
    /** Saves the next picture as NNN_name.png. False if it cannot be written. */
    bool take(const QString& name);
    /** Where a file beside the pictures is. */
    QString path(const QString& name) const { return folder.filePath(name); }

private:
    QDir folder;
    int count = 0;
};
