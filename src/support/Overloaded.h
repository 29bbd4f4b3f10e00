// A visitor made of lambdas, one per alternative of a variant.
#pragma once

namespace kova {

template <class... Alternatives>
struct Overloaded : Alternatives... {
    using Alternatives::operator()...;
};
template <class... Alternatives>
Overloaded(Alternatives...) -> Overloaded<Alternatives...>;

} // namespace kova
