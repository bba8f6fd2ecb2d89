#ifndef POINT2_HXX_INCLUDED
#define POINT2_HXX_INCLUDED

class Point2 {
public:
    Point2() = default;
    Point2(double x, double y) : m_at{x, y} {}
    explicit Point2(const double at[2]) : m_at{at[0], at[1]} {}
    double operator[](int i) const { return m_at[i]; }
    double &operator[](int i) { return m_at[i]; }

private:
    double m_at[2] = {0.0, 0.0};
};

#endif
