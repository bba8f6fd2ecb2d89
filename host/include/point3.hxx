#ifndef POINT3_HXX_INCLUDED
#define POINT3_HXX_INCLUDED

class Point3 {
public:
    Point3() = default;
    Point3(double x, double y, double z) : m_at{x, y, z} {}
    explicit Point3(const double at[3]) : m_at{at[0], at[1], at[2]} {}
    double operator[](int i) const { return m_at[i]; }
    double &operator[](int i) { return m_at[i]; }

private:
    double m_at[3] = {0.0, 0.0, 0.0};
};

#endif
