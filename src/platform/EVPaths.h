#pragma once

#include <QString>

// Where the application keeps its files. Looked up on every call, so that a changed HOME
// (as in tests) is honoured at once.
namespace EVPaths {

// The application files folder: the generic data location plus the application's identifier.
QString applicationFilesDirectory();

// The user's documents folder.
QString documentsDirectory();

// The folder of widget pictures: "imagedata" in the documents folder, created on demand; the
// documents folder itself when it cannot be created.
QString pictureFolder();

} // namespace EVPaths
