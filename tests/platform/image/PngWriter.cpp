#include "tests/platform/image/PngWriter.h"

#include <stdexcept>

namespace TestSupport {

namespace {

void append(png_structp png, png_bytep bytes, png_size_t count) {
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(bytes), count);
}

void nothingToFlush(png_structp /*png*/) {}

[[noreturn]] void fail(png_structp /*png*/, png_const_charp message) {
    throw std::runtime_error(message);
}

/// A writer into a string; errors are exceptions, which is fine for the library where it is built with unwind
/// tables.
class Writer {
public:
    Writer()
        : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, nullptr)),
          info_(png_create_info_struct(png_)) {
        png_set_write_fn(png_, &bytes_, append, nothingToFlush);
        png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    }
    ~Writer() { png_destroy_write_struct(&png_, &info_); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void writeHeader(int width, int height, const PngForm& form) {
        png_set_IHDR(png_, info_, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                     form.depth, form.colour, form.interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                     PNG_FILTER_TYPE_DEFAULT);
        if (!form.palette.empty()) {
            png_set_PLTE(png_, info_, form.palette.data(), static_cast<int>(form.palette.size()));
        }
        if (!form.paletteAlpha.empty()) {
            png_set_tRNS(png_, info_, form.paletteAlpha.data(), static_cast<int>(form.paletteAlpha.size()),
                         nullptr);
        }
        if (form.transparentColour) {
            png_set_tRNS(png_, info_, nullptr, 1, &*form.transparentColour);
        }
        png_write_info(png_, info_);
    }

    void writeRow(const PngForm& form) {
        for (int pass = png_set_interlace_handling(png_); pass > 0; --pass) {
            png_write_row(png_, form.row.data());
        }
        png_write_end(png_, info_);
    }

    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
    png_structp png_;
    png_infop info_;
};

} // namespace

std::string pngBytes(const PngForm& form) {
    Writer writer;
    writer.writeHeader(2, 1, form);
    writer.writeRow(form);
    return writer.bytes();
}

std::string pngHeaderOnly(int width, int height) {
    Writer writer;
    writer.writeHeader(width, height, {});
    // An empty chunk of pixels, which is where a reader of the header stops; the checksum is that of its
    // name.
    return writer.bytes() + std::string("\0\0\0\0IDAT\x35\xaf\x06\x1e", 12);
}

} // namespace TestSupport
