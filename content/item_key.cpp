// Layout keys of names that the platform upper-cases.
#include "content/item_key.h"

std::uint32_t ItemKeyInPlace(LPWSTR parsingName)
{
    return HashText(CharUpperW(parsingName));
}

std::uint32_t ItemKey(WStringView parsingName)
{
    WString name(parsingName);
    return ItemKeyInPlace(name.data());
}
