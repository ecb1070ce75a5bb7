# Writes OUTPUT, a C++ source with the page's FILES as byte arrays and the table PageAssets().
# Run as: cmake -DOUTPUT=... -DFILES=a;b -P embed.cmake
set(arrays "")
set(rows "")
set(index 0)
foreach(file ${FILES})
  get_filename_component(name ${file} NAME)
  get_filename_component(extension ${file} LAST_EXT)
  if(extension STREQUAL ".html")
    set(type "text/html; charset=utf-8")
  elseif(extension STREQUAL ".js")
    set(type "text/javascript; charset=utf-8")
  elseif(extension STREQUAL ".css")
    set(type "text/css; charset=utf-8")
  elseif(extension STREQUAL ".svg")
    set(type "image/svg+xml")
  elseif(extension STREQUAL ".png")
    set(type "image/png")
  elseif(extension STREQUAL ".webmanifest")
    set(type "application/manifest+json")
  else()
    message(FATAL_ERROR "no content type for ${file}")
  endif()
  file(READ ${file} hex HEX)
  string(LENGTH "${hex}" digits)
  math(EXPR size "${digits} / 2")
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${hex}")
  string(APPEND arrays "constexpr char kAsset${index}[] = {${bytes}'\\0'};\n")
  string(APPEND rows "        {\"/${name}\", \"${type}\", {kAsset${index}, ${size}}},\n")
  math(EXPR index "${index} + 1")
endforeach()
file(WRITE ${OUTPUT} "// Written by panelhost/web/embed.cmake.
#include \"panelhost/web/http_rules.h\"

namespace panelhost {
namespace {
${arrays}}  // namespace

const std::vector<PageAsset>& PageAssets() {
    static const std::vector<PageAsset> assets = {
${rows}    };
    return assets;
}

}  // namespace panelhost
")
