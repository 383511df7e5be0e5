#include "xml/Parser.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <limits>
#include <new>

namespace wenlolib::xml {
namespace {

static_assert(Parser::pieceBytes <= INT_MAX);

/// Stands before each block: C's `realloc` knows the size of the old block, C++ does not.
struct alignas(std::max_align_t) BlockHeader {
  std::size_t size;
};

BlockHeader* headerOf(void* block) noexcept {
  return static_cast<BlockHeader*>(block) - 1;
}

void* allocate(std::size_t size) noexcept {
  if (size > std::numeric_limits<std::size_t>::max() - sizeof(BlockHeader)) return nullptr;
  void* memory = ::operator new(sizeof(BlockHeader) + size, std::nothrow);
  if (memory == nullptr) return nullptr;
  return ::new (memory) BlockHeader{size} + 1;
}

void release(void* block) noexcept {
  if (block != nullptr) ::operator delete(headerOf(block));
}

void* reallocate(void* block, std::size_t size) noexcept {
  if (block == nullptr) return allocate(size);
  const std::size_t held = headerOf(block)->size;
  if (size <= held) return block;
  void* larger = allocate(size);
  if (larger == nullptr) return nullptr;
  std::memcpy(larger, block, held);
  release(block);
  return larger;
}

const XML_Memory_Handling_Suite memorySuite = {allocate, reallocate, release};

}  // namespace

Parser::Parser(const char* encoding, std::size_t piece)
    : parser_(XML_ParserCreate_MM(encoding, &memorySuite, nullptr)),
      piece_(std::min(piece, pieceBytes)) {}

Parser::~Parser() {
  XML_ParserFree(parser_);
}

bool Parser::feed(std::string_view bytes, bool final) {
  while (bytes.size() > piece_) {
    if (!feedPiece(bytes.substr(0, piece_), false)) return false;
    bytes.remove_prefix(piece_);
  }
  return feedPiece(bytes, final);
}

bool Parser::feedPiece(std::string_view piece, bool final) {
  if (stopped_) return false;
  const auto status = XML_Parse(parser_, piece.data(), static_cast<int>(piece.size()),
                                final ? XML_TRUE : XML_FALSE);
  if (thrown_ != nullptr) std::rethrow_exception(std::exchange(thrown_, nullptr));
  if (status == XML_STATUS_OK && !stopped_) return true;
  stopped_ = true;
  if (XML_GetErrorCode(parser_) == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  return false;
}

void Parser::stop() noexcept {
  stopped_ = true;
  // This is refused only if the parser has already ended, which is what is wanted.
  static_cast<void>(XML_StopParser(parser_, XML_FALSE));
}

}  // namespace wenlolib::xml
