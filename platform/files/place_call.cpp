// The places that owe an answer.
#include "platform/files/place_call.h"

#include <map>

namespace platform
{

namespace
{

using Waiting = std::map<std::string, PlaceAnswers>;

struct AskedPlaces
{
    std::mutex mutex;
    std::map<std::string, Waiting> byPlace;
};

AskedPlaces& Asked()
{
    static auto& asked = *new AskedPlaces;
    return asked;
}

} // namespace

bool BeginAsking(const std::string& place)
{
    const std::lock_guard lock(Asked().mutex);
    return Asked().byPlace.try_emplace(place).second;
}

void EndAsking(const std::string& place)
{
    std::unique_lock lock(Asked().mutex);
    const auto answered = Asked().byPlace.extract(place);
    lock.unlock();
    for (const auto& [key, answers] : answered.mapped())
        answers();
}

void WhenItAnswers(const std::string& place, const std::string& key, const PlaceAnswers& answers)
{
    {
        const std::lock_guard lock(Asked().mutex);
        const auto asked = Asked().byPlace.find(place);
        if (asked != Asked().byPlace.end())
        {
            asked->second.insert_or_assign(key, answers);
            return;
        }
    }
    answers();
}

} // namespace platform
