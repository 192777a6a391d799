// Working on premultiplied pictures by pixman.
#include "platform/drawing/image_scaling.h"

#include "platform/drawing/pixman_image.h"

#include <cstdlib>
#include <memory>

namespace platform
{

namespace
{

struct Free
{
    void operator()(void* memory) const { std::free(memory); }
};

PixmanImage Wrap(const IconImage& image)
{
    return ImageOn({const_cast<std::uint32_t*>(image.pixels.data()), image.width, image.height, image.width});
}

/// Each result pixel is the average of the source pixels under it; in between them when the picture grows.
void UseAveragingFilter(pixman_image_t* image, pixman_fixed_t scaleX, pixman_fixed_t scaleY)
{
    int count = 0;
    const std::unique_ptr<pixman_fixed_t, Free> filter(
        pixman_filter_create_separable_convolution(&count, scaleX, scaleY, PIXMAN_KERNEL_LINEAR, PIXMAN_KERNEL_LINEAR,
                                                   PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, 4, 4));
    if (filter != nullptr)
        pixman_image_set_filter(image, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, filter.get(), count);
}

} // namespace

IconImage ScaleImage(const IconImage& source, int width, int height)
{
    IconImage result{width, height, std::vector<std::uint32_t>(static_cast<std::size_t>(width) * height)};
    if (source.width <= 0 || source.height <= 0)
        return result;
    const PixmanImage from = Wrap(source);
    const PixmanImage to = Wrap(result);
    const auto scaleX = static_cast<pixman_fixed_t>((static_cast<std::int64_t>(source.width) << 16) / width);
    const auto scaleY = static_cast<pixman_fixed_t>((static_cast<std::int64_t>(source.height) << 16) / height);
    pixman_transform_t transform;
    pixman_transform_init_scale(&transform, scaleX, scaleY);
    pixman_image_set_transform(from.get(), &transform);
    // Without padding the edge would fade into the transparent outside.
    pixman_image_set_repeat(from.get(), PIXMAN_REPEAT_PAD);
    UseAveragingFilter(from.get(), scaleX, scaleY);
    pixman_image_composite32(PIXMAN_OP_SRC, from.get(), nullptr, to.get(), 0, 0, 0, 0, 0, 0, width, height);
    return result;
}

void ComposeImage(IconImage& image, const IconImage& over, int x, int y)
{
    if (image.width <= 0 || image.height <= 0 || over.width <= 0 || over.height <= 0)
        return;
    pixman_image_composite32(PIXMAN_OP_OVER, Wrap(over).get(), nullptr, Wrap(image).get(), 0, 0, 0, 0, x, y, over.width,
                             over.height);
}

} // namespace platform
