" Menu files of qn740-sim: one message per line. Install: copy this folder over ~/.vim.
if exists("b:current_syntax")
  finish
endif

syntax case match

" a line that begins with no command word is no message
syntax match qn740Error "^\s*[^# \t][^,]*"
syntax match qn740Comment "^\s*#.*$" contains=qn740Check,@Spell
syntax match qn740Check "qn740:\s*ignore\%(-file\)\?\%([ ,]\+QN[0-9]\+\)\+" contained
syntax match qn740Wait "^\s*wait\>.*$" contains=qn740WaitTime
syntax match qn740WaitTime "[0-9]\+" contained

syntax match qn740Word "^\s*\%(AK\|SK\|CK\|CV\|CM\|SB\|DB\|PING\|Slave\|SQ\|SM\|VER\|SH\|MS\|PAX\|LC\|EI\|SP\|IK\|SF\|HM\|ST\|PM\|CLEAR\)\ze\%(,\|$\)"
" the menu and the key that a message names
syntax match qn740Menu "\%(^\s*\%(AK\|SK\|CK\|CV\|EI\|CM\|MS\),\)\@<=[^,]\+"
syntax match qn740Key "\%(^\s*\%(AK\|CK\|CV\|EI\),[^,]*,\)\@<=[^,]\+"
" what a key sends
syntax match qn740Command "\%(^\s*AK\%(,[^,]*\)\{4},\)\@<=[^,]\+"
syntax match qn740Number ",\@<=[-+]\?[0-9.]\+\ze\%(,\|$\)"
syntax match qn740Escape "\\\%(x[0-9A-Fa-f]\{2}\|\\\)"
syntax match qn740Separator ","

highlight default link qn740Comment Comment
highlight default link qn740Check SpecialComment
highlight default link qn740Wait Statement
highlight default link qn740WaitTime Number
highlight default link qn740Error Error
highlight default link qn740Word Keyword
highlight default link qn740Menu Type
highlight default link qn740Key Identifier
highlight default link qn740Command String
highlight default link qn740Number Number
highlight default link qn740Escape SpecialChar
highlight default link qn740Separator Delimiter

let b:current_syntax = "qn740menu"
