#include "apps/cli/picture/svg.h"

#include <ostream>

namespace megset::cli {

std::string svgText(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (static_cast<unsigned char>(c) >= 0x20)
            result += c;
    }
    return result;
}

void beginSvg(double width, double height, double scale, std::string_view style, std::ostream& out)
{
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << width << ' ' << height << "\" width=\""
        << width * scale << "\" height=\"" << height * scale << "\">\n"
        << "<style>" << style << "</style>\n"
        << "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
}

} // namespace megset::cli
