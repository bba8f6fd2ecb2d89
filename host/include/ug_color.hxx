#ifndef UG_COLOR_HXX_INCLUDED
#define UG_COLOR_HXX_INCLUDED

// Colour numbers. Every int is a valid value: the palette goes on above 15.
enum UgColor : int {
    Blue = 1,
    Green,
    Cyan,
    Red,
    Magenta,
    Yellow,
    White,
    Olive,
    Pink,
    Brown,
    Orange,
    Purple,
    DarkRed,
    Aquamarine,
    Gray
};

#endif
