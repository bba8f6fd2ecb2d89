#include "picture.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

std::string output(const std::string &command)
{
    std::string text;
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe) {
        ADD_FAILURE() << command;
        return text;
    }
    char buffer[4096];
    for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) text.append(buffer, n);
    EXPECT_EQ(pclose(pipe), 0) << command;
    return text;
}

std::string contentOf(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

Picture Picture::ofPng(const std::string &path, double widthInMillimetres)
{
    Picture picture;
    cairo_surface_t *image = cairo_image_surface_create_from_png(path.c_str());
    EXPECT_EQ(cairo_surface_status(image), CAIRO_STATUS_SUCCESS) << path;
    picture.m_width = cairo_image_surface_get_width(image);
    picture.m_height = cairo_image_surface_get_height(image);
    picture.m_scale = picture.m_width / widthInMillimetres;
    const int stride = cairo_image_surface_get_stride(image);
    const unsigned char *data = cairo_image_surface_get_data(image);
    for (int y = 0; y < picture.m_height; ++y) {
        for (int x = 0; x < picture.m_width; ++x) {
            const unsigned char *p = data + y * stride + x * 4;
            picture.m_ink.push_back(1.0 - (p[0] + p[1] + p[2]) / 765.0);
        }
    }
    cairo_surface_destroy(image);
    return picture;
}

Picture Picture::ofPdf(const std::string &path, double widthInMillimetres, int dpi, int page)
{
    const std::string n = std::to_string(page);
    output("pdftoppm -png -singlefile -f " + n + " -l " + n + " -r " + std::to_string(dpi) + " " +
           path + " " + path + ".page");
    return ofPng(path + ".page.png", widthInMillimetres);
}

Picture Picture::ofSvg(const std::string &path, double widthInMillimetres, int dpi)
{
    const std::string n = std::to_string(dpi);
    output("rsvg-convert --unlimited -d " + n + " -p " + n + " -o " + path + ".png " + path);
    return ofPng(path + ".png", widthInMillimetres);
}

double Picture::inkAt(int column, int row) const
{
    if (column < 0 || row < 0 || column >= m_width || row >= m_height) return 0.0;
    return m_ink[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_width) +
                 static_cast<std::size_t>(column)];
}

double Picture::ink(double x, double y) const
{
    return inkAt(static_cast<int>(std::floor(x * m_scale)),
                 static_cast<int>(std::floor(m_height - y * m_scale)));
}

Picture::Box Picture::inked(double left, double bottom, double right, double top) const
{
    Box box;
    const int x0 = static_cast<int>(left * m_scale), x1 = static_cast<int>(right * m_scale);
    const int y0 = static_cast<int>(m_height - top * m_scale);
    const int y1 = static_cast<int>(m_height - bottom * m_scale);
    // An edge pixel that is inked by a third ends a third into itself.
    const auto columnInk = [&](int x) {
        double most = 0.0;
        for (int y = y0; y < y1; ++y) most = std::max(most, inkAt(x, y));
        return most;
    };
    const auto rowInk = [&](int y) {
        double most = 0.0;
        for (int x = x0; x < x1; ++x) most = std::max(most, inkAt(x, y));
        return most;
    };
    constexpr double some = 0.02;
    int l = x0, r = x1 - 1, t = y0, b = y1 - 1;
    while (l <= r && columnInk(l) < some) ++l;
    while (r > l && columnInk(r) < some) --r;
    if (l > r) return box;
    while (t < b && rowInk(t) < some) ++t;
    while (b > t && rowInk(b) < some) --b;
    box.empty = false;
    box.left = (l + 1 - columnInk(l)) / m_scale;
    box.right = (r + columnInk(r)) / m_scale;
    box.top = (m_height - (t + 1 - rowInk(t))) / m_scale;
    box.bottom = (m_height - (b + rowInk(b))) / m_scale;
    return box;
}

double Picture::inkAcross(double x0, double y0, double x1, double y1) const
{
    const double length = std::hypot(x1 - x0, y1 - y0);
    const int steps = static_cast<int>(length * m_scale * 8);
    double sum = 0.0;
    for (int i = 0; i < steps; ++i) {
        const double t = (i + 0.5) / steps;
        sum += ink(x0 + (x1 - x0) * t, y0 + (y1 - y0) * t);
    }
    return sum / steps * length;
}

double Picture::inkShare(double left, double bottom, double right, double top) const
{
    double sum = 0.0;
    std::size_t count = 0;
    for (int y = static_cast<int>(m_height - top * m_scale); y < m_height - bottom * m_scale; ++y) {
        for (int x = static_cast<int>(left * m_scale); x < right * m_scale; ++x, ++count)
            sum += inkAt(x, y);
    }
    return count == 0 ? 0.0 : sum / static_cast<double>(count);
}

double disagreement(const Picture &a, const Picture &b)
{
    EXPECT_LE(std::abs(a.width() - b.width()), 1);
    EXPECT_LE(std::abs(a.height() - b.height()), 1);
    const int width = std::min(a.width(), b.width()), height = std::min(a.height(), b.height());
    const auto farFrom = [&](double value, const Picture &other, int x, int y) {
        double low = 1.0, high = 0.0;
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
                low = std::min(low, other.inkAt(x + dx, y + dy));
                high = std::max(high, other.inkAt(x + dx, y + dy));
            }
        }
        return value < low - 0.5 || value > high + 0.5;
    };
    std::size_t apart = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (farFrom(a.inkAt(x, y), b, x, y) || farFrom(b.inkAt(x, y), a, x, y)) ++apart;
    return static_cast<double>(apart) / (static_cast<double>(width) * height);
}
