# SPDX-License-Identifier: Apache-2.0
# Completes the command lines of orvex_policy. The descriptions are those of its help.

function __orvex_policy_is_behind --description 'Just behind these words'
    set -l words (commandline -opc)
    test "$words[2..]" = "$argv"
end

function __orvex_policy_is_in --description 'Among the options of one of these modules'
    set -l words (commandline -opc)
    contains -- "$words[2]" $argv; and not contains -- "$words[3]" on off script; and test "$words[-1]" != --except
end

function __orvex_policy_can_command --description 'The same, while no command is given'
    __orvex_policy_is_in $argv
    and not string match -qr -- '^(-[heAUDL]*[AUDL]|--(add|update|delete|list)$)' (commandline -opc)
end

function __orvex_policy_can_except --description 'The same, while no exception is given'
    __orvex_policy_is_in $argv
    and not string match -qr -- '^(-[heAUDL]*e|--except(=|$))' (commandline -opc)
end

function __orvex_policy_typed --description 'The value that is being typed, as the program will get it'
    commandline -ct | string replace -r '^--[a-z]+=' '' | string unescape
end

function __orvex_policy_list --description 'Complete the last piece of a list by this command'
    set -l typed (__orvex_policy_typed)
    set -l before (string replace -r '[^:]*$' '' -- $typed)
    printf '%s\n' $before($argv (string replace -r '.*:' '' -- $typed))
end

function __orvex_policy_files
    # As a name of the command line, in which only a tilde at the start has a meaning.
    set -l name (string escape --no-quoted -- $argv | string replace -r '^\\\\~' '~')
    complete -C "'' $name"
end

function __orvex_policy_directories
    __orvex_policy_files $argv | string match '*/'
end

function __orvex_policy_packages
    # To rpm it is a pattern.
    string match -qr '[^A-Za-z0-9._+-]' -- $argv
    or rpm -qa --nodigest --nosignature --queryformat '%{NAME}\n' "$argv*" 2>/dev/null
end

function __orvex_policy_processes
    for directory in (string match -r '^/proc/[0-9]+$' /proc/*)
        # A thread of the kernel has no command line.
        if read -z -l line <$directory/cmdline; and read -l name <$directory/comm
            string join \t (path basename $directory) $name
        end
    end 2>/dev/null
end

function __orvex_policy_kernel_modules
    test -e /proc/modules; and string replace -r ' .*' '' </proc/modules
end

complete -c orvex_policy -f
complete -c orvex_policy -n __orvex_policy_is_behind -a exec -d 执行控制
complete -c orvex_policy -n __orvex_policy_is_behind -a net -d 应用程序联网控制
complete -c orvex_policy -n __orvex_policy_is_behind -a file -d 文件只读保护
complete -c orvex_policy -n __orvex_policy_is_behind -a proc -d 进程防杀死
complete -c orvex_policy -n __orvex_policy_is_behind -a kmod -d 内核模块防卸载
complete -c orvex_policy -n __orvex_policy_is_behind -a userid -d 三员用户标识
complete -c orvex_policy -n __orvex_policy_is_behind -a box -d 文件保护箱
complete -c orvex_policy -n __orvex_policy_is_behind -a enable -d 开启所有塔沃安全功能
complete -c orvex_policy -n __orvex_policy_is_behind -a disable -d 关闭所有塔沃安全功能
complete -c orvex_policy -n __orvex_policy_is_behind -a permissive -d '宽松模式, 只记录日志'
complete -c orvex_policy -n __orvex_policy_is_behind -a status -d 显示所有塔沃安全功能状态
complete -c orvex_policy -n __orvex_policy_is_behind -s h -l help -d 显示帮助信息
complete -c orvex_policy -n '__orvex_policy_is_in exec net file proc kmod userid box' -s h -l help -d 显示帮助信息

complete -c orvex_policy -n '__orvex_policy_is_behind exec' -a on -d 开启执行控制
complete -c orvex_policy -n '__orvex_policy_is_behind exec' -a off -d 关闭执行控制
complete -c orvex_policy -n '__orvex_policy_is_behind exec' -a script -d 脚本管控开关设置
complete -c orvex_policy -n '__orvex_policy_is_behind exec script' -a on -d 开启脚本管控
complete -c orvex_policy -n '__orvex_policy_is_behind exec script' -a off -d 关闭脚本管控
complete -c orvex_policy -n '__orvex_policy_is_behind net' -a on -d 开启应用程序联网控制
complete -c orvex_policy -n '__orvex_policy_is_behind net' -a off -d 关闭应用程序联网控制
complete -c orvex_policy -n '__orvex_policy_is_behind file' -a on -d 开启文件只读保护
complete -c orvex_policy -n '__orvex_policy_is_behind file' -a off -d 关闭文件只读保护
complete -c orvex_policy -n '__orvex_policy_is_behind proc' -a on -d 开启进程防杀死
complete -c orvex_policy -n '__orvex_policy_is_behind proc' -a off -d 关闭进程防杀死
complete -c orvex_policy -n '__orvex_policy_is_behind kmod' -a on -d 开启内核模块防卸载
complete -c orvex_policy -n '__orvex_policy_is_behind kmod' -a off -d 关闭内核模块防卸载
complete -c orvex_policy -n '__orvex_policy_is_behind box' -a on -d 开启文件保护箱
complete -c orvex_policy -n '__orvex_policy_is_behind box' -a off -d 关闭文件保护箱

complete -c orvex_policy -n '__orvex_policy_can_command exec file proc kmod' -s A -l add -d 添加策略
complete -c orvex_policy -n '__orvex_policy_can_command net' -s A -l add -d '添加策略, 默认拒绝联网'
complete -c orvex_policy -n '__orvex_policy_can_command net' -s U -l update -d 更新策略
complete -c orvex_policy -n '__orvex_policy_can_command exec net file proc kmod' -s D -l delete -d 删除策略
complete -c orvex_policy -n '__orvex_policy_can_command exec net file proc kmod userid' -s L -l list -d 查询策略

# Values of exec, file and proc are lists.
complete -c orvex_policy -n '__orvex_policy_is_in exec file proc' -s f -l file -x \
    -a '(__orvex_policy_list __orvex_policy_files)' -d 文件路径
complete -c orvex_policy -n '__orvex_policy_is_in net' -s f -l file -r -F -d 应用程序路径
complete -c orvex_policy -n '__orvex_policy_is_in kmod' -s f -l file -r -F -d 内核模块文件路径
complete -c orvex_policy -n '__orvex_policy_is_in userid' -s f -l file -r -F -d 文件路径
complete -c orvex_policy -n '__orvex_policy_is_in exec proc' -s d -l dir -x \
    -a '(__orvex_policy_list __orvex_policy_directories)' -d 目录路径
# Behind the exception no directory can be named.
complete -c orvex_policy -n '__orvex_policy_can_except file' -s d -l dir -x \
    -a '(__orvex_policy_list __orvex_policy_directories)' -d '目录路径, 仅支持添加只读保护文件'
complete -c orvex_policy -n '__orvex_policy_is_in userid' -s d -l dir -x \
    -a '(__orvex_policy_directories (__orvex_policy_typed))' -d 目录
complete -c orvex_policy -n '__orvex_policy_is_in exec file proc' -s P -l package -x \
    -a '(__orvex_policy_list __orvex_policy_packages)' -d 已安装的软件包名称
# The program knows the long form of -P by this spelling.
complete -c orvex_policy -n '__orvex_policy_is_in net' -s P -l pakcage -x \
    -a '(__orvex_policy_packages (__orvex_policy_typed))' -d 已安装的软件包名称
complete -c orvex_policy -n '__orvex_policy_is_in userid' -s P -l package -x \
    -a '(__orvex_policy_packages (__orvex_policy_typed))' -d 已安装的软件包名
complete -c orvex_policy -n '__orvex_policy_is_in proc' -s p -l pid -x \
    -a '(__orvex_policy_list __orvex_policy_processes)' -d 进程号
complete -c orvex_policy -n '__orvex_policy_is_in kmod' -s n -l name -x \
    -a '(__orvex_policy_kernel_modules)' -d '内核模块名(可通过lsmod查看)'
complete -c orvex_policy -n '__orvex_policy_is_in net' -s v -l value -x \
    -a 'allow\t允许联网 deny\t拒绝联网' -d '设置是否允许联网, 只支持-U操作'
complete -c orvex_policy -n '__orvex_policy_is_in exec' -l tampered -d 查询已被篡改的程序

# -e stands alone, --except takes a value.
complete -c orvex_policy -n '__orvex_policy_can_except exec' -s e -d '例外程序, 不做执行管控'
complete -c orvex_policy -n '__orvex_policy_can_except exec' -l except -x -d '例外程序, 不做执行管控'
complete -c orvex_policy -n '__orvex_policy_can_except file' -s e -d '例外程序, 表示允许程序访问只读文件'
complete -c orvex_policy -n '__orvex_policy_can_except file' -l except -x -d '例外程序, 表示允许程序访问只读文件'
complete -c orvex_policy -n '__orvex_policy_can_except proc' -s e -d '例外程序, 表示可杀死保护进程'
complete -c orvex_policy -n '__orvex_policy_can_except proc' -l except -x -d '例外程序, 表示可杀死保护进程'
