#include "PDFOutline.h"

#include <qpdf/QUtil.hh>

namespace {

using Platform::TextPathSegment;

const char *operatorOf(const TextPathSegment &segment)
{
    switch (segment.kind) {
    case TextPathSegment::Kind::Move:
        return "m\n";
    case TextPathSegment::Kind::Line:
        return "l\n";
    case TextPathSegment::Kind::Curve:
        return "c\n";
    default:
        return "h\n";
    }
}

} // namespace

std::string pdfNumber(double value)
{
    return QUtil::double_to_string(value, 4);
}

std::size_t pointsOf(const TextPathSegment &segment)
{
    switch (segment.kind) {
    case TextPathSegment::Kind::Close:
        return 0;
    case TextPathSegment::Kind::Curve:
        return 3;
    default:
        return 1;
    }
}

std::string pathOperators(const std::vector<TextPathSegment> &outline)
{
    std::string path;
    for (const TextPathSegment &segment : outline) {
        for (std::size_t i = 0; i < pointsOf(segment); ++i)
            path += pdfNumber(segment.points[i].x) + " " + pdfNumber(segment.points[i].y) + " ";
        path += operatorOf(segment);
    }
    return path + "f\n";
}
