#include "core/plans/glossary/Glossary.h"

#include <array>

namespace orvane {
namespace {

constexpr std::array simplifiedChineseRows{
    GlossaryRow{"以上|超过|大于|多于|高于", "over"},
    GlossaryRow{"至少", "at least"},
    GlossaryRow{"小于|少于|以下|以内|不到|之内|最近|新的|新|小的", "under"},
    GlossaryRow{"删除|删掉|删了|删去|删|移除|清除|清掉|去掉|扔掉|丢掉|除掉|干掉", "delete"},
    GlossaryRow{"移到废纸篓|移至废纸篓|放进废纸篓|放入废纸篓|扔进废纸篓|扔到废纸篓|移到回收站|移至回收站|放进回收站|"
                "放入回收站|扔进回收站|移到垃圾桶",
                "delete"},
    GlossaryRow{"清理|打扫|清洁|清一清|清一下", "clean"},
    GlossaryRow{"清空|倒空|腾空", emptyOrClear},
    GlossaryRow{"释放|腾出", "free"},
    GlossaryRow{"收拾", tidyOrClean},
    GlossaryRow{"整理|排序|归类|分类|归档|归整", "sort"},
    GlossaryRow{"查找|寻找|找出|找到|找|搜索|搜", "find"},
    GlossaryRow{"显示|展示|看看|给我看|查看", "show"},
    GlossaryRow{"列出|列表|清单", "list"},
    GlossaryRow{"卸载|反安装", "uninstall"},
    GlossaryRow{"恢复|还原|找回|复原", "restore"},
    GlossaryRow{"撤销|撤消|取消", "undo"},
    GlossaryRow{"定期|定时|计划", "schedule"},
    GlossaryRow{"每天|每日", "every day"},
    GlossaryRow{"每周|每个星期|每星期|每个礼拜", "every week"},
    GlossaryRow{"每月|每个月", "every month"},
    GlossaryRow{"自动", "automatically"},
    GlossaryRow{"保留|留着|留下|保存", "keep"},
    GlossaryRow{"不要|别|不能|不可以|不许|千万不|请勿|禁止|勿|不删|不想删", "don't"},
    GlossaryRow{"不用的|不再使用|没用的|没用过的|用不到的|不使用的|未使用|不需要的", "unused"},
    GlossaryRow{"除了|除外|以外", "except"},
    GlossaryRow{"放心|安全地", "safely"},
    GlossaryRow{"什么|啥|哪些东西", "what"},
    GlossaryRow{"哪些|哪个|哪几个", "which"},
    GlossaryRow{"怎么|如何|多少|怎样", "how"},
    GlossaryRow{"哪里|在哪|为什么", "where"},
    GlossaryRow{"吗|呢|可不可以|能不能|是不是|可以吗", "?"},
    GlossaryRow{"屏幕截图|屏幕快照|截图|截屏|屏幕截屏|屏幕照片", "screenshots"},
    GlossaryRow{"安装包|安装程序|安装文件|磁盘映像|磁盘镜像", "installers"},
    GlossaryRow{"缓存文件|缓存|临时文件|高速缓存", "caches"},
    GlossaryRow{"日志文件|日志|记录文件", "logs"},
    GlossaryRow{"下载文件夹|下载目录|下载项|下载", "downloads"},
    GlossaryRow{"桌面", "desktop"},
    GlossaryRow{"文稿|文档|我的文档", "documents"},
    GlossaryRow{"照片|图片|相片|图像", "pictures"},
    GlossaryRow{"视频|影片|电影", "videos"},
    GlossaryRow{"音乐|歌曲", "music"},
    GlossaryRow{"重复文件|重复的文件|重复的|重复|相同的文件", "duplicates"},
    GlossaryRow{"废纸篓|回收站|垃圾桶|垃圾箱|垃圾篓", "trash"},
    GlossaryRow{"应用程序|应用|软件|程序|app", "app"},
    GlossaryRow{"文件", "files"},
    GlossaryRow{"文件夹|目录", "folder"},
    GlossaryRow{"磁盘|硬盘", "disk"},
    GlossaryRow{"空间", "space"},
    GlossaryRow{"所有|全部|一切|都", "all"},
    GlossaryRow{"旧的|旧|老的|陈旧|过时", "old"},
    GlossaryRow{"以前|之前|前|早于", "older"},
    GlossaryRow{"大文件", "large files"},
    GlossaryRow{"大的|大型|巨大|最大|很大|大", "large"},
    GlossaryRow{"天|日", "day"},
    GlossaryRow{"周|星期|个星期|个礼拜|礼拜", "week"},
    GlossaryRow{"个月", "month"},
    GlossaryRow{"年", "year"},
    GlossaryRow{"今天|今日", "today"},
    GlossaryRow{"昨天|昨日", "yesterday"},
    GlossaryRow{"上周|上个月|去年", "last"},
    GlossaryRow{"半年|半 年", "6 month"},
    GlossaryRow{"半个月", "15 day"},
    GlossaryRow{"一年半", "18 month"},
    GlossaryRow{"gb|吉字节|千兆字节", "gb"},
    GlossaryRow{"mb|兆字节|兆", "mb"},
    GlossaryRow{"几", "few"},
    GlossaryRow{"一下|一些|一点", ""},
    GlossaryRow{"的|了|把|将|请|在|上|里|里面|中|内|从|到|和|与|及|我|我的|你|帮我|帮|给|可以|能|想|要|比|是|有|这些|"
                "那些|这个|那个|电脑|内容|掉|过|着|个|使用|已|请帮",
                ""},
};

}  // namespace

const GlossaryRows simplifiedChineseGlossary = simplifiedChineseRows;

}  // namespace orvane
