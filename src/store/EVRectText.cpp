#include "store/EVRectText.h"

#include <array>
#include <charconv>

namespace EVRectText {
namespace {

QString numberText(double value)
{
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return QString::fromLatin1(buffer.data(), result.ptr - buffer.data());
}

bool mayStartNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '-' || c == '.' || c == 'i' || c == 'I' || c == 'n' ||
           c == 'N';
}

} // namespace

QString fromRect(const QRectF &rect)
{
    return QStringLiteral("{{%1, %2}, {%3, %4}}")
        .arg(numberText(rect.x()), numberText(rect.y()), numberText(rect.width()),
             numberText(rect.height()));
}

QRectF toRect(const QString &text)
{
    const QByteArray bytes = text.toLatin1();
    const char *position = bytes.constData();
    const char *end = position + bytes.size();
    std::array<double, 4> numbers{};
    std::size_t found = 0;
    while (position < end && found < numbers.size()) {
        if (!mayStartNumber(*position)) {
            ++position;
            continue;
        }
        double value = 0.0;
        const auto result = std::from_chars(position, end, value);
        if (result.ptr == position) {
            ++position;
            continue;
        }
        numbers[found++] = result.ec == std::errc() ? value : 0.0;
        position = result.ptr;
    }
    return QRectF(numbers[0], numbers[1], numbers[2], numbers[3]);
}

QString fromPoint(const QPointF &point)
{
    return QStringLiteral("{%1, %2}").arg(numberText(point.x()), numberText(point.y()));
}

QPointF toPoint(const QString &text)
{
    // The point's two numbers are the first two that a rectangle's text starts with.
    return toRect(text).topLeft();
}

} // namespace EVRectText
