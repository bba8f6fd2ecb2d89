// Pixels of a rendered sheet, measured in millimetres.
#pragma once

#include <string>
#include <vector>

// Runs a program and gives what it printed; fails the test when it fails.
std::string output(const std::string &command);
std::string contentOf(const std::string &path);

class Picture {
public:
    // A grey copy; `widthInMillimetres` of the sheet gives the scale.
    static Picture ofPng(const std::string &path, double widthInMillimetres);
    // By poppler and librsvg, at a resolution.
    static Picture ofPdf(const std::string &path, double widthInMillimetres, int dpi, int page = 1);
    static Picture ofSvg(const std::string &path, double widthInMillimetres, int dpi);

    int width() const { return m_width; }
    int height() const { return m_height; }
    double perMillimetre() const { return m_scale; }

    // 0 white to 1 black, at a place on the sheet (y upwards) or a pixel (y downwards).
    double ink(double x, double y) const;
    double inkAt(int column, int row) const;

    // What is inked at least by half, within a rectangle of the sheet: its edges, to parts of a pixel.
    struct Box {
        double left = 0, bottom = 0, right = 0, top = 0;
        bool empty = true;
        double width() const { return right - left; }
        double height() const { return top - bottom; }
    };
    Box inked(double left, double bottom, double right, double top) const;
    // Ink along a path across a line: how wide the line is there, in millimetres.
    double inkAcross(double x0, double y0, double x1, double y1) const;
    double inkShare(double left, double bottom, double right, double top) const;

private:
    int m_width = 0;
    int m_height = 0;
    double m_scale = 1.0;
    std::vector<double> m_ink;
};

// Share of pixels that differ by more than half, whatever lies within a pixel's distance being equal:
// painters round edges differently.
double disagreement(const Picture &a, const Picture &b);
