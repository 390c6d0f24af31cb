# Makes the metainfo: KELVO_RELEASE_NOTES from this version's entry in the list of changes, KELVO_LINKS from where the
# project lives on the web.
set(KELVO_HOMEPAGE "" CACHE STRING "Where the sources are on the web, with issues below it; empty while nowhere")
set(KELVO_SCREENSHOTS "" CACHE STRING "Where docs/images is on the web; empty while nowhere")

file(READ ${PROJECT_SOURCE_DIR}/CHANGELOG.md rest)
string(REGEX REPLACE ".*\n## ${PROJECT_VERSION} - [0-9-]+\n+" "" rest "${rest}")
string(REGEX REPLACE "\n## .*" "" rest "${rest}")
string(REPLACE "&" "&amp;" rest "${rest}")
string(REPLACE "<" "&lt;" rest "${rest}")
string(REGEX REPLACE "`([^`]*)`" "<code>\\1</code>" rest "${rest}")
string(REGEX REPLACE "\n  +" " " rest "${rest}")
string(REGEX REPLACE "\n- ([^\n]*)" "\n          <li>\\1</li>" rest "${rest}")
set(KELVO_RELEASE_NOTES "")
# From the last heading to the first.
while(rest MATCHES "^(.*)\n### ([^\n]*)\n+(.*)$")
  set(rest "${CMAKE_MATCH_1}")
  set(heading "${CMAKE_MATCH_2}")
  string(STRIP "${CMAKE_MATCH_3}" items)
  string(PREPEND KELVO_RELEASE_NOTES
    "\n        <p>${heading}:</p>\n        <ul>\n          ${items}\n        </ul>")
endwhile()
string(STRIP "${rest}" rest)
string(PREPEND KELVO_RELEASE_NOTES "        <p>${rest}</p>")

set(KELVO_LINKS "")
if(KELVO_HOMEPAGE)
  set(KELVO_LINKS "
  <url type=\"homepage\">${KELVO_HOMEPAGE}</url>
  <url type=\"bugtracker\">${KELVO_HOMEPAGE}/issues</url>")
endif()
if(KELVO_SCREENSHOTS)
  string(APPEND KELVO_LINKS "
  <screenshots>
    <screenshot type=\"default\">
      <caption>The ten cabinet and the ten amp slots</caption>
      <image>${KELVO_SCREENSHOTS}/main-window.png</image>
    </screenshot>
    <screenshot>
      <caption>The same on a dark desktop</caption>
      <image>${KELVO_SCREENSHOTS}/main-window-dark.png</image>
    </screenshot>
  </screenshots>")
endif()
