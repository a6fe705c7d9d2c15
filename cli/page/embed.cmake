# Makes C++ of the page: cmake -D chart_js=FILE -D chart_js_licence=FILE -D output=FILE -P embed.cmake
#
# Style sheet and scripts are put into the template, and their hashes into its
# Content-Security-Policy, so that a browser runs nothing else. The page is split at its data.

set(folder ${CMAKE_CURRENT_LIST_DIR})

# The source of a Content-Security-Policy for a text: 'sha256-' and the hash in base 64.
function(hash_source text result)
  set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  string(SHA256 hash "${text}")
  set(hash "${hash}00")  # 33 bytes are 44 digits; the last one is that of the byte of zeros
  set(base64 "")
  foreach(at RANGE 0 63 3)
    string(SUBSTRING "${hash}" ${at} 3 three)
    math(EXPR first "0x${three} >> 6")
    math(EXPR second "0x${three} & 63")
    string(SUBSTRING "${digits}" ${first} 1 first)
    string(SUBSTRING "${digits}" ${second} 1 second)
    string(APPEND base64 "${first}${second}")
  endforeach()
  string(SUBSTRING "${base64}" 0 43 base64)
  set(${result} "'sha256-${base64}='" PARENT_SCOPE)
endfunction()

function(escape_html text result)
  string(REPLACE "&" "&amp;" text "${text}")
  string(REPLACE "<" "&lt;" text "${text}")
  string(REPLACE ">" "&gt;" text "${text}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

file(READ ${folder}/page.html page)
file(READ ${folder}/page.css style)
file(READ ${folder}/page.js script)
file(READ ${chart_js} chart)
file(READ ${chart_js_licence} licence)

hash_source("${style}" style_source)
hash_source("${script}" script_source)
hash_source("${chart}" chart_source)
escape_html("${licence}" licence)

# The data divides the page first, before texts are put in that could contain its place.
string(FIND "${page}" "{{data}}" data_begin)
string(LENGTH "{{data}}" data_size)
math(EXPR data_end "${data_begin} + ${data_size}")
string(SUBSTRING "${page}" 0 ${data_begin} head)
string(SUBSTRING "${page}" ${data_end} -1 tail)

string(REPLACE "{{script-sources}}" "${chart_source} ${script_source}" head "${head}")
string(REPLACE "{{style-source}}" "${style_source}" head "${head}")
string(REPLACE "{{style}}" "${style}" head "${head}")
string(REPLACE "{{licence}}" "${licence}" head "${head}")
string(REPLACE "{{chart}}" "${chart}" tail "${tail}")
string(REPLACE "{{script}}" "${script}" tail "${tail}")

file(WRITE ${output} "#include \"cli/output/page_template.h\"

namespace cli {

const std::string_view kPageHead = R\"page(${head})page\";

const std::string_view kPageTail = R\"page(${tail})page\";

}  // namespace cli
")
