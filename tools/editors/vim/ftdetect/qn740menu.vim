" Menu files of qn740-sim. :make shows what the check finds.
autocmd BufNewFile,BufRead *.menu setfiletype qn740menu
autocmd FileType qn740menu setlocal commentstring=#\ %s
autocmd FileType qn740menu setlocal makeprg=qn740-sim\ --check\ %:S
autocmd FileType qn740menu setlocal errorformat=%f:%l:\ %trror:\ %m,%f:%l:\ %tarning:\ %m,%f:%l:\ %tote:\ %m,%f:\ %trror:\ %m,%-G%.%#
