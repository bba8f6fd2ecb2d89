// The preferences of one annotation, as numbered arrays.
#include "openc/drafting.h"

#include "model/calls.h"

#include "uf.h"

#include <algorithm>
#include <cmath>
#include <iterator>

using host::IdSymbol;
using host::Lettering;
using host::NumberedPreferences;
using host::Object;
using host::Session;
namespace drafting = host::drafting;

namespace {

struct IntPreference {
    int index;
    int Lettering::*member;
};
constexpr IntPreference kInts[] = {
    {UF_DRF_MPI_text_justification, &Lettering::justification},
    {UF_DRF_MPI_align_site, &Lettering::site},
    {UF_DRF_MPI_text_color, &Lettering::color},
    {UF_DRF_MPI_text_font, &Lettering::font},
    {UF_DRF_MPI_text_width, &Lettering::width},
};

struct RealPreference {
    int index;
    double Lettering::*member;
};
constexpr RealPreference kReals[] = {
    {UF_DRF_MPR_text_angle, &Lettering::angle},
    {UF_DRF_MPR_char_size, &Lettering::size},
    {UF_DRF_MPR_aspect_ratio, &Lettering::aspect},
    {UF_DRF_MPR_char_space_factor, &Lettering::charSpace},
    {UF_DRF_MPR_line_space_factor, &Lettering::lineSpace},
};

// Only an ID symbol has these; on a note they are numbers like any other.
constexpr int kSymbolInts[] = {UF_DRF_MPI_id_symbol_type, UF_DRF_MPI_id_symbol_density};
constexpr int kSymbolReals[] = {UF_DRF_MPR_id_symbol_size};

template <class Rows> bool isNamed(const Rows &rows, int index)
{
    return std::any_of(std::begin(rows), std::end(rows),
                       [&](const auto &row) { return row.index == index; });
}

template <class Indexes> bool isAmong(const Indexes &indexes, int index)
{
    return std::find(std::begin(indexes), std::end(indexes), index) != std::end(indexes);
}

// Everything that the arrays say about one annotation.
struct Preferences {
    Lettering lettering;
    NumberedPreferences other;
    int symbolType = 0;
    int symbolDensity = 0;
    double symbolSize = 0.0;
    bool operator==(const Preferences &) const = default;
};

Preferences preferencesOf(Object &annotation)
{
    Preferences all{drafting::letteringOf(annotation), drafting::numberedOf(annotation)};
    if (const IdSymbol *symbol = annotation.as<IdSymbol>()) {
        all.symbolType = symbol->type;
        all.symbolDensity = symbol->density;
        all.symbolSize = symbol->size;
    }
    return all;
}

Preferences fromArrays(const int mpi[], const double mpr[], bool symbol)
{
    Preferences all;
    for (const IntPreference &row : kInts) all.lettering.*row.member = mpi[row.index];
    for (const RealPreference &row : kReals) all.lettering.*row.member = mpr[row.index];
    if (symbol) {
        all.symbolType = mpi[UF_DRF_MPI_id_symbol_type];
        all.symbolDensity = mpi[UF_DRF_MPI_id_symbol_density];
        all.symbolSize = mpr[UF_DRF_MPR_id_symbol_size];
    }
    for (int i = 0; i < NUM_INT_PARAMS; ++i) {
        const bool named = isNamed(kInts, i) || (symbol && isAmong(kSymbolInts, i));
        if (!named && mpi[i] != 0) all.other.ints[i] = mpi[i];
    }
    for (int i = 0; i < NUM_REAL_PARAMS; ++i) {
        const bool named = isNamed(kReals, i) || (symbol && isAmong(kSymbolReals, i));
        if (!named && mpr[i] != 0.0) all.other.reals[i] = mpr[i];
    }
    return all;
}

void toArrays(const Preferences &all, bool symbol, int mpi[], double mpr[])
{
    std::fill_n(mpi, NUM_INT_PARAMS, 0);
    std::fill_n(mpr, NUM_REAL_PARAMS, 0.0);
    for (const auto &[index, value] : all.other.ints) mpi[index] = value;
    for (const auto &[index, value] : all.other.reals) mpr[index] = value;
    for (const IntPreference &row : kInts) mpi[row.index] = all.lettering.*row.member;
    for (const RealPreference &row : kReals) mpr[row.index] = all.lettering.*row.member;
    if (!symbol) return;
    mpi[UF_DRF_MPI_id_symbol_type] = all.symbolType;
    mpi[UF_DRF_MPI_id_symbol_density] = all.symbolDensity;
    mpr[UF_DRF_MPR_id_symbol_size] = all.symbolSize;
}

void check(const Preferences &all, const Object &annotation)
{
    drafting::checkLettering(all.lettering);
    drafting::requireValid(drafting::isInFontTable(*annotation.part, all.lettering.font));
    if (!annotation.as<IdSymbol>()) return;
    drafting::requireValid(all.symbolType >= UF_DRF_sym_circle &&
                           all.symbolType < UF_DRF_sym_maximum);
    drafting::requireValid(std::isfinite(all.symbolSize) && all.symbolSize > 0.0);
}

void store(Object &annotation, const Preferences &all)
{
    Session::get().changing(annotation, "preferences");
    drafting::letteringOf(annotation) = all.lettering;
    drafting::numberedOf(annotation) = all.other;
    if (IdSymbol *symbol = annotation.as<IdSymbol>()) {
        symbol->type = all.symbolType;
        symbol->density = all.symbolDensity;
        symbol->size = all.symbolSize;
    }
}

} // namespace

// Radius and diameter symbols belong to dimensions: annotations answer empty texts.
extern "C" int UF_DRF_ask_object_preferences(tag_t object, int mpi[100], double mpr[70],
                                             char radius_val[27], char diameter_val[27])
{
    return host::call("UF_DRF_ask_object_preferences", [&] {
        Object &annotation = drafting::requireAnnotation(object);
        drafting::requireValid(mpi && mpr);
        toArrays(preferencesOf(annotation), annotation.as<IdSymbol>() != nullptr, mpi, mpr);
        if (radius_val) radius_val[0] = '\0';
        if (diameter_val) diameter_val[0] = '\0';
    });
}

extern "C" int UF_DRF_set_object_preferences(tag_t object, int mpi[100], double mpr[70],
                                             const char *, const char *)
{
    return host::call("UF_DRF_set_object_preferences", [&] {
        Object &annotation = drafting::requireAnnotation(object);
        drafting::requireValid(mpi && mpr);
        const Preferences all = fromArrays(mpi, mpr, annotation.as<IdSymbol>() != nullptr);
        check(all, annotation);
        if (!(all == preferencesOf(annotation))) store(annotation, all);
    });
}
