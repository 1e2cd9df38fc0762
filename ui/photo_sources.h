#pragma once
// Photo bytes from outside the program for the photo commands: a file the user chose, or
// an image on the clipboard. What the bytes are is decided later by AppModel.setPhoto.

#include <QByteArray>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quarrydex::ui {

class PhotoSources : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit PhotoSources(QObject* parent = nullptr);

    // The file's bytes; empty when it cannot be read (the model then reports that the file
    // couldn't be opened as a photo).
    Q_INVOKABLE static QByteArray readFile(const QUrl& url);
    // The clipboard's image encoded as PNG; empty when the clipboard holds no image (text
    // included).
    Q_INVOKABLE static QByteArray clipboardImage();
    Q_INVOKABLE static bool clipboardHasImage() { return !clipboardImage().isEmpty(); }
    // Name filters for the open dialog.
    Q_INVOKABLE static QStringList nameFilters();
};

} // namespace quarrydex::ui
