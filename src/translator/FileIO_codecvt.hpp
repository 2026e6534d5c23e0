#pragma once

#include <algorithm>
#include <cwchar>
#include <locale>

/// Conversion facet of the translation files: one byte of the file is one character, in both directions. What a file
/// holds beyond ASCII (UTF-8 in the shipped files) so passes through the wide texts unchanged.
template<class Intern, class Extern>
class FileIO_codecvt : public std::codecvt<Intern, Extern, std::mbstate_t> {
public:
    using Base = std::codecvt<Intern, Extern, std::mbstate_t>;
    using result = typename Base::result;
    using Base::Base;

protected:
    result do_in(std::mbstate_t&, const Extern* from, const Extern* fromEnd, const Extern*& fromNext, Intern* to,
                 Intern* toEnd, Intern*& toNext) const override
    {
        const auto widen = [](Extern byte) { return static_cast<Intern>(static_cast<unsigned char>(byte)); };
        return convert(from, fromEnd, fromNext, to, toEnd, toNext, widen);
    }

    result do_out(std::mbstate_t&, const Intern* from, const Intern* fromEnd, const Intern*& fromNext, Extern* to,
                  Extern* toEnd, Extern*& toNext) const override
    {
        const auto narrow = [](Intern character) { return static_cast<Extern>(character); };
        return convert(from, fromEnd, fromNext, to, toEnd, toNext, narrow);
    }

    result do_unshift(std::mbstate_t&, Extern* to, Extern*, Extern*& toNext) const override
    {
        toNext = to;
        return Base::noconv;
    }

    int do_encoding() const noexcept override { return 1; }
    bool do_always_noconv() const noexcept override { return false; }
    int do_length(std::mbstate_t&, const Extern* from, const Extern* fromEnd, std::size_t most) const override
    {
        return static_cast<int>(std::min(most, static_cast<std::size_t>(fromEnd - from)));
    }
    int do_max_length() const noexcept override { return 1; }

private:
    template<class From, class To, class Convert>
    static result convert(const From* from, const From* fromEnd, const From*& fromNext, To* to, To* toEnd, To*& toNext,
                          Convert one)
    {
        const auto count = std::min(fromEnd - from, toEnd - to);
        toNext = std::transform(from, from + count, to, one);
        fromNext = from + count;
        return fromNext == fromEnd ? Base::ok : Base::partial;
    }
};
