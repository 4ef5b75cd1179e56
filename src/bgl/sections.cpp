#include "bgl/sections.h"

namespace quilmark {

int32_t Section_Position(const Bgl_Image& image, int header_word) {
    return Read_Int32(image, Bgl_Layout_Word) == 1 ? Read_Int32(image, header_word) : 0;
}

Section_Header Read_Section_Header(const Bgl_Image& image, int64_t position) {
    return {Read_Int32(image, position), Read_Int32(image, position + 4)};
}

} // namespace quilmark
