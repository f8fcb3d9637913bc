// fmt's code, of which Debian has the headers but no library for the cross compiler. What fmt declares as templates and defines
// here only is instantiated.
#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail
{

template dragonbox::decimal_fp<float> dragonbox::to_decimal(float) noexcept;
template dragonbox::decimal_fp<double> dragonbox::to_decimal(double) noexcept;
template thousands_sep_result<char> thousands_sep_impl(locale_ref);
template char decimal_point_impl(locale_ref);

} // namespace detail
FMT_END_NAMESPACE
