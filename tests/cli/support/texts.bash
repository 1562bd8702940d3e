# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# The help texts, as the user reads them.

print_global_help() {
  cat <<'END'
用法: orvex_policy <module> -h
      orvex_policy [enable|disable|permissive]
      orvex_policy status
功能: 获取安全模块策略帮助信息
参数:
   -h, --help 显示帮助信息
   module: 安全模块
       exec:    执行控制
       net:     应用程序联网控制
       file:    文件只读保护
       proc:    进程防杀死
       kmod:    内核模块防卸载
       userid:  三员用户标识
       box:     文件保护箱
   enable:  开启所有塔沃安全功能
   disable: 关闭所有塔沃安全功能
   permissive: 宽松模式, 只记录日志
   status: 显示所有塔沃安全功能状态
示例:
   orvex_policy exec -h
   orvex_policy enable
   orvex_policy status
END
}

print_exec_help() {
  cat <<'END'
用法: orvex_policy exec [on|off]
      orvex_policy exec script [on|off] 脚本管控开关设置
      orvex_policy exec [-A|-D] [-f|-d|-P] <path|dir|pkgname>
      orvex_policy exec [-A|-D] [-e] [-f|-d|-P] <path|dir|pkgname>
      orvex_policy exec [-L] [--tampered]
      orvex_policy exec [-L] [-f|-d|-P] <path|dir|pkgname>
功能: 执行控制策略配置
参数:
   exec: 执行控制
   [status]
       exec
           on  开启执行控制
           off 关闭执行控制
       exec script
           on  开启脚本管控
           off 关闭脚本管控
   [Commands]
       -A, --add    添加策略
       -D, --delete 删除策略
       -L, --list   查询策略
   [Options]
       -e, --except 例外程序, 不做执行管控
       -f, --file 文件路径
       -d, --dir  目录路径
       -P, --package 已安装的软件包名称
       --tampered 查询已被篡改的程序
       -h, --help 显示帮助信息
示例:
   orvex_policy exec -A -f /home/tavro/test.sh
   orvex_policy exec -A -d /home/tavro/test/
   orvex_policy exec -A -P hesa-guard
   orvex_policy exec -D -f /home/tavro/test.sh
   orvex_policy exec -A -e -f /home/tavro/test.sh
   orvex_policy exec -D -e -d /home/tavro/test/
   orvex_policy exec -L
   orvex_policy exec -L --tampered
   orvex_policy exec -L -f /home/tavro/test.sh
END
}

print_net_help() {
  cat <<'END'
用法: orvex_policy net [on|off]
      orvex_policy net [-A|-D] [-f|-P] <path|pkgName>
      orvex_policy net [-U] [-f|-P] <path|pkgName> [-v] <value>
      orvex_policy net [-L]
功能: 应用程序联网控制策略配置，以软件包维度管控是否允许联网。
      若应用程序属于软件包，则会设置对应软件包的策略。
参数:
   net: 应用程序联网控制
   [status]
       off     关闭应用程序联网控制
       on      开启应用程序联网控制
   [Commands]
       -A, --add 添加策略, 默认拒绝联网
       -U, --update 更新策略
       -D, --delete 删除策略
       -L, --list 查询策略
   [Options]
       -f, --file    应用程序路径
       -P, --package 已安装的软件包名称
       -v, --value   设置是否允许联网, 只支持-U操作
           allow: 允许联网
           deny:  拒绝联网
       -h, --help    显示帮助信息
示例:
   orvex_policy net -A -f /usr/sbin/sshd
   orvex_policy net -U -f /usr/sbin/sshd -v deny
   orvex_policy net -D -f /usr/sbin/sshd
   orvex_policy net -A -P qaxbrowser-safe-stable
   orvex_policy net -L
END
}

print_file_help() {
  cat <<'END'
用法: orvex_policy file [on|off]
      orvex_policy file [-A|-D] [-f|-d|-P] <path|dir|pkgname>
      orvex_policy file [-A|-D] [-f|-d|-P] <path|dir|pkgname> [-e] [-f|-P] <path|pkgname>
      orvex_policy file [-L]
功能: 文件只读保护策略配置
参数:
   file: 文件只读保护
   [status]
       on  开启文件只读保护
       off 关闭文件只读保护
   [Commands]
       -A, --add    添加策略
       -D, --delete 删除策略
       -L, --list   查询策略
   [Options]
       -e, --except  例外程序, 表示允许程序访问只读文件
       -f, --file    文件路径
       -d, --dir     目录路径, 仅支持添加只读保护文件
       -P, --package 已安装的软件包名称
       -h, --help    显示帮助信息
示例:
   orvex_policy file -A -f /home/tavro/test.txt
   orvex_policy file -D -f /home/tavro/test.txt
   orvex_policy file -A -P hesa-guard
   orvex_policy file -A -f /home/tavro/test.txt -e -f /usr/sbin/hesa-guard
   orvex_policy file -A -d /usr/bin/ -e -f /usr/sbin/hesa-guard
   orvex_policy file -D -f /home/tavro/test.txt -e -P hesa-guard
   orvex_policy file -D -P hesa-guard -e -P orvex-daemon
   orvex_policy file -L
END
}

print_proc_help() {
  cat <<'END'
用法: orvex_policy proc [on|off]
      orvex_policy proc [-A|-D] [-f|-p] <path|pid>
      orvex_policy proc [-A|-D] [-f|-p] <path|pid> [-e] [-f|-d|-P] <path|dir|pkgname>
      orvex_policy proc [-L]
功能: 进程防杀死策略配置
参数:
   proc: 进程防杀死
   [status]
       on  开启进程防杀死
       off 关闭进程防杀死
   [Commands]
       -A, --add    添加策略
       -D, --delete 删除策略
       -L, --list   查询策略
   [Options]
       -e, --except  例外程序, 表示可杀死保护进程
       -f, --file    文件路径
       -p, --pid     进程号
       -d, --dir     目录路径
       -P, --package 已安装的软件包名称
       -h, --help    显示帮助信息
示例:
   orvex_policy proc -A -f /usr/sbin/tavro-log-viewer
   orvex_policy proc -A -p 32323
   orvex_policy proc -D -f /usr/sbin/tavro-log-viewer
   orvex_policy proc -A -f /usr/sbin/tavro-log-viewer -e -f /usr/bin/kill
   orvex_policy proc -A -f /usr/sbin/tavro-log-viewer -e -d /usr/bin/
   orvex_policy proc -D -f /usr/sbin/tavro-log-viewer -e -P hesa-guard
   orvex_policy proc -D -p 32323 -e -d /usr/bin/
   orvex_policy proc -L
END
}

print_kmod_help() {
  cat <<'END'
用法: orvex_policy kmod [on|off]
      orvex_policy kmod [-A|-D] [-f|-n] <path|kmodName>
      orvex_policy kmod [-L]
功能: 内核模块防卸载策略配置
参数:
   kmod: 内核模块防卸载
   [status]
       on  开启内核模块防卸载
       off 关闭内核模块防卸载
   [Commands]
       -A, --add 添加策略
       -D, --delete 删除策略
       -L, --list 查询策略
   [Options]
       -f, --file 内核模块文件路径
       -n, --name 内核模块名(可通过lsmod查看)
       -h, --help 显示帮助信息
示例:
   orvex_policy kmod -A -f /home/tavro/test.ko
   orvex_policy kmod -D -f /home/tavro/test.ko
   orvex_policy kmod -L
END
}

print_userid_help() {
  cat <<'END'
用法: orvex_policy userid [-L] [-f|-d|-P] <path|dir|pkgname>
功能: 三员用户标识策略查询
参数:
   userid: 三员用户标识
   [Commands]
       -L, --list 查询策略
   [Options]
       -f, --file      文件路径
       -d, --dir       目录
       -P, --package   已安装的软件包名
       -h, --help      显示帮助信息
示例:
   orvex_policy userid -L -f /home/tavro/test.txt
   orvex_policy userid -L -d /home/secadm
   orvex_policy userid -L -P hesa-guard
END
}

print_box_help() {
  cat <<'END'
用法: orvex_policy box [on|off]
功能: 文件保护箱开关设置
参数:
   box: 文件保护箱
   [status]
       on  开启文件保护箱
       off 关闭文件保护箱
   [Options]
       -h, --help 显示帮助信息
示例:
   orvex_policy box on/off
END
}

# print_status STATE MODULE...: the status report with these modules on and all others off.
print_status() {
  local module switched
  printf 'orvex status : %s\n' "$1"
  if [[ $1 == disable ]]; then
    return
  fi
  for module in exec 'exec script' net kmod file proc 3adm box; do
    switched=off
    if printf '%s\n' "${@:2}" | grep -qx "$module"; then
      switched=on
    fi
    # The names stand in a column of twelve.
    printf '    %-12s: %s\n' "$module" "$switched"
  done
}

# print_kmod_list NAME...
print_kmod_list() {
  local name
  for name in "$@"; do
    printf '模块名称: %s, 防卸载保护: 开\n' "$name"
  done
}
