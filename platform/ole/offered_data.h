// The data object of what another program drags.
#pragma once

#include "platform/ole/com_object.h"
#include "platform/screen/drags.h"

#include "ole2.h"

#include <memory>

namespace platform
{

/// Whether what a drag offered can still be read.
struct OfferReading
{
    bool open = true;
};

/// A data object whose formats have the names of the offer's targets; what can be derived from them comes behind.
/// Nothing is read before it is asked for, and nothing twice. A program that has once let a second pass without
/// answering is not asked again.
ComReference<IDataObject> MakeOfferedData(const screen::DragOffer& offer, std::shared_ptr<OfferReading> reading);

} // namespace platform
