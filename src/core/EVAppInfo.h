#pragma once

#include <QString>

// Facts about the application and the system that texts shown to the user include.
namespace EVAppInfo {

QString name();
QString version();

// The operating system's version as one number, (major << 8) + (minor << 4) + micro with each
// part capped at 15; printed in lower-case hexadecimal. Read once per process.
int systemVersion();

// Where users' feedback mail goes.
QString feedbackAddress();

} // namespace EVAppInfo
