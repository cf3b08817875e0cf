// Arbitrary text as a stored widget frame ("{{x, y}, {w, h}}"). Whatever the text, reading it
// must end and stay within it; the rectangle read must survive its own text form unchanged; and
// a widget entry holding the text has either no frame or one a window can take.
#include "FuzzChecks.h"

#include "store/EVRectText.h"
#include "store/EVWidgetEntry.h"

#include <QGuiApplication>

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

bool same(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

void checkRoundTrip(const QString &text)
{
    const QRectF rect = EVRectText::toRect(text);
    const QRectF again = EVRectText::toRect(EVRectText::fromRect(rect));
    require(same(rect.x(), again.x()) && same(rect.y(), again.y()) &&
            same(rect.width(), again.width()) && same(rect.height(), again.height()));
    const QPointF point = EVRectText::toPoint(text);
    const QPointF pointAgain = EVRectText::toPoint(EVRectText::fromPoint(point));
    require(same(point.x(), pointAgain.x()) && same(point.y(), pointAgain.y()));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // Frames are judged against the screens, so there must be some: the offscreen platform's.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const char *bytes = reinterpret_cast<const char *>(data);
    // Stored text comes out of the file as UTF-8; the reader itself works on Latin-1.
    const QString text = QString::fromUtf8(bytes, qsizetype(size));
    checkRoundTrip(text);
    checkRoundTrip(QString::fromLatin1(bytes, qsizetype(size)));

    EVWidgetEntry entry;
    entry.setWidgetFrameDesc(text);
    require(isNoneOrWindowFrame(entry.frame()));
    return 0;
}
