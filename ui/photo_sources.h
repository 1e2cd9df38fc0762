#pragma once
// Photo bytes from outside the program for the photo commands: a file the user chose, an
// image on the clipboard, or image data dropped on the window. What the bytes are is decided
// later by the model (AppModel.setPhoto and its background twin setPhotoAsync).

#include "app/app_model.h"

#include <QByteArray>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

class QMimeData;

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
    // The clipboard's photo (see photoFrom); empty when it holds no image (text included).
    Q_INVOKABLE static QByteArray clipboardImage();
    Q_INVOKABLE static bool clipboardHasImage() { return !clipboardImage().isEmpty(); }
    // Hands the clipboard's photo to `model`, prepared in the background; false, and nothing
    // handed over, when the clipboard holds no image.
    Q_INVOKABLE static bool pasteInto(quarrydex::AppModel* model);
    // The photo in `mime`: the first of PNG, TIFF, JPEG and HEIC data as it is; failing those,
    // any other image Qt can read from it, encoded losslessly as PNG; else empty.
    static QByteArray photoFrom(const QMimeData* mime);
    // Of the formats (MIME types) a drop offers, the one to take the photo from, in the order
    // photoFrom uses, then any other "image/..." type; "" when none is an image.
    Q_INVOKABLE static QString imageFormat(const QStringList& formats);
    // Name filters for the open dialog: image files only.
    Q_INVOKABLE static QStringList nameFilters();
};

} // namespace quarrydex::ui
