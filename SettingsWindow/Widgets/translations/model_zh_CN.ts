<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Model</name>
    <message>
        <source>A name is needed</source>
        <translation>需要名称</translation>
    </message>
    <message>
        <source>A name must not have blanks, quotes or any of / # \</source>
        <translation>名称不能含空格、引号或 / # \</translation>
    </message>
    <message>
        <source>A name must not have more than 127 letters</source>
        <translation>名称不能超过 127 个字母</translation>
    </message>
    <message>
        <source>A3</source>
        <translation>A3</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Above what is on the page</source>
        <translation>在页面内容之上</translation>
    </message>
    <message>
        <source>Absolute colorimetric</source>
        <translation>绝对比色</translation>
    </message>
    <message>
        <source>Across the page, in percent from the left</source>
        <translation>横向位置（距左边的百分比）</translation>
    </message>
    <message>
        <source>Advanced colour settings</source>
        <translation>高级颜色设置</translation>
    </message>
    <message>
        <source>All colours</source>
        <translation>所有颜色</translation>
    </message>
    <message>
        <source>All over the page</source>
        <translation>布满页面</translation>
    </message>
    <message>
        <source>Along the page, in percent from below</source>
        <translation>纵向位置（距底边的百分比）</translation>
    </message>
    <message>
        <source>Angle in degrees, clockwise</source>
        <translation>角度（度，顺时针）</translation>
    </message>
    <message>
        <source>Another value</source>
        <translation>其他值</translation>
    </message>
    <message>
        <source>As given across and along the page</source>
        <translation>按横向和纵向位置的指定</translation>
    </message>
    <message>
        <source>As set at the printer</source>
        <translation>按打印机的设置</translation>
    </message>
    <message>
        <source>As the job</source>
        <translation>与作业相同</translation>
    </message>
    <message>
        <source>As wide as the page</source>
        <translation>与页面同宽</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>B4</source>
        <translation>B4</translation>
    </message>
    <message>
        <source>Back cover</source>
        <translation>封底</translation>
    </message>
    <message>
        <source>Below what is on the page</source>
        <translation>在页面内容之下</translation>
    </message>
    <message>
        <source>Blank</source>
        <translation>空白</translation>
    </message>
    <message>
        <source>Booklet</source>
        <translation>小册子</translation>
    </message>
    <message>
        <source>Booklet of sheets</source>
        <translation>小册子纸张</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>下</translation>
    </message>
    <message>
        <source>Bottom left</source>
        <translation>左下</translation>
    </message>
    <message>
        <source>Bottom right</source>
        <translation>右下</translation>
    </message>
    <message>
        <source>Box name</source>
        <translation>文档箱名称</translation>
    </message>
    <message>
        <source>Box number</source>
        <translation>文档箱编号</translation>
    </message>
    <message>
        <source>Box password</source>
        <translation>文档箱密码</translation>
    </message>
    <message>
        <source>By a profile of one's own</source>
        <translation>按自定配置文件</translation>
    </message>
    <message>
        <source>By single profiles</source>
        <translation>按单独的配置文件</translation>
    </message>
    <message>
        <source>By the chosen profile</source>
        <translation>按所选配置文件</translation>
    </message>
    <message>
        <source>By the printer</source>
        <translation>由打印机处理</translation>
    </message>
    <message>
        <source>CMYK source profile</source>
        <translation>CMYK 源配置文件</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>居中</translation>
    </message>
    <message>
        <source>Colour</source>
        <translation>颜色</translation>
    </message>
    <message>
        <source>Colour matching</source>
        <translation>颜色匹配</translation>
    </message>
    <message>
        <source>Colour matching, as told by programs</source>
        <translation>颜色匹配（按程序的指定）</translation>
    </message>
    <message>
        <source>Colour profile of the document, a file on the server</source>
        <translation>文档的颜色配置文件（服务器上的文件）</translation>
    </message>
    <message>
        <source>Colours that profiles apply to</source>
        <translation>配置文件适用的颜色</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>份数</translation>
    </message>
    <message>
        <source>Courier</source>
        <translation>Courier</translation>
    </message>
    <message>
        <source>Courier Bold</source>
        <translation>Courier 粗体</translation>
    </message>
    <message>
        <source>Cover pages</source>
        <translation>封面和封底</translation>
    </message>
    <message>
        <source>Covers from the tray of the job</source>
        <translation>封面和封底使用作业的纸盒</translation>
    </message>
    <message>
        <source>Department code</source>
        <translation>部门代码</translation>
    </message>
    <message>
        <source>Device colours only</source>
        <translation>仅设备颜色</translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation>对角线</translation>
    </message>
    <message>
        <source>Distance from the edges</source>
        <translation>距边缘的距离</translation>
    </message>
    <message>
        <source>Extended box password</source>
        <translation>扩展文档箱密码</translation>
    </message>
    <message>
        <source>Fitted</source>
        <translation>适应</translation>
    </message>
    <message>
        <source>Folder in the box</source>
        <translation>文档箱中的文件夹</translation>
    </message>
    <message>
        <source>Follows from “%1”</source>
        <translation>由“%1”决定</translation>
    </message>
    <message>
        <source>Font</source>
        <translation>字体</translation>
    </message>
    <message>
        <source>Front cover</source>
        <translation>封面</translation>
    </message>
    <message>
        <source>General</source>
        <translation>常规</translation>
    </message>
    <message>
        <source>Held</source>
        <translation>已保留</translation>
    </message>
    <message>
        <source>Helvetica</source>
        <translation>Helvetica</translation>
    </message>
    <message>
        <source>Helvetica Bold</source>
        <translation>Helvetica 粗体</translation>
    </message>
    <message>
        <source>How far each folded sheet sticks out</source>
        <translation>每张折叠纸的伸出量</translation>
    </message>
    <message>
        <source>In its own size</source>
        <translation>原有大小</translation>
    </message>
    <message>
        <source>Is too long</source>
        <translation>太长</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>左</translation>
    </message>
    <message>
        <source>Look the user's domain up in the directory</source>
        <translation>在目录中查找用户的域</translation>
    </message>
    <message>
        <source>Margin along the fold</source>
        <translation>折线处的边距</translation>
    </message>
    <message>
        <source>Margin at the other edges</source>
        <translation>其他边的边距</translation>
    </message>
    <message>
        <source>Media type</source>
        <translation>纸张类型</translation>
    </message>
    <message>
        <source>Media type of the back cover</source>
        <translation>封底的纸张类型</translation>
    </message>
    <message>
        <source>Media type of the front cover</source>
        <translation>封面的纸张类型</translation>
    </message>
    <message>
        <source>Must be %1 digits, and nothing else</source>
        <translation>必须只是 %1 位数字</translation>
    </message>
    <message>
        <source>Must be %1 to %2 digits, and nothing else</source>
        <translation>必须只是 %1 到 %2 位数字</translation>
    </message>
    <message>
        <source>Must be 1, 3 or 4 numbers from 0 to 1 with commas between them</source>
        <translation>必须是 1、3 或 4 个 0 到 1 的数，以逗号分隔</translation>
    </message>
    <message>
        <source>Must be a length, as 10mm or 0.5in, or a number of points (1/72 inch)</source>
        <translation>必须是长度，如 10mm 或 0.5in，或点数（1/72 英寸）</translation>
    </message>
    <message>
        <source>Must be a list of pages, as 2-5,8,10-</source>
        <translation>必须是页码列表，如 2-5,8,10-</translation>
    </message>
    <message>
        <source>Must be a number</source>
        <translation>必须是数</translation>
    </message>
    <message>
        <source>Must be a number above 0</source>
        <translation>必须是大于 0 的数</translation>
    </message>
    <message>
        <source>Must be a number from %1 to %2</source>
        <translation>必须是 %1 到 %2 的数</translation>
    </message>
    <message>
        <source>Must be a size, as 100x200mm</source>
        <translation>必须是尺寸，如 100x200mm</translation>
    </message>
    <message>
        <source>Must be a whole number</source>
        <translation>必须是整数</translation>
    </message>
    <message>
        <source>Must be digits, and nothing else</source>
        <translation>必须只是数字</translation>
    </message>
    <message>
        <source>Must be the full path of a file</source>
        <translation>必须是文件的完整路径</translation>
    </message>
    <message>
        <source>Must have %1 characters</source>
        <translation>必须有 %1 个字符</translation>
    </message>
    <message>
        <source>Must have %1 to %2 characters</source>
        <translation>必须有 %1 到 %2 个字符</translation>
    </message>
    <message>
        <source>Must not have tabs, line breaks or the like</source>
        <translation>不能含制表符、换行符等</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>No booklet</source>
        <translation>不制作小册子</translation>
    </message>
    <message>
        <source>No cover</source>
        <translation>无封面</translation>
    </message>
    <message>
        <source>No temporary file can be made: %1</source>
        <translation>无法创建临时文件：%1</translation>
    </message>
    <message>
        <source>Not specified</source>
        <translation>未指定</translation>
    </message>
    <message>
        <source>Not together with “%1”</source>
        <translation>不能与“%1”同用</translation>
    </message>
    <message>
        <source>Not together with “%1”: %2</source>
        <translation>不能与“%1”（%2）同用</translation>
    </message>
    <message>
        <source>On one side</source>
        <translation>单面</translation>
    </message>
    <message>
        <source>On the pages</source>
        <translation>在这些页上</translation>
    </message>
    <message>
        <source>Only with “%1”</source>
        <translation>仅当有“%1”时</translation>
    </message>
    <message>
        <source>Only with “%1”: %2</source>
        <translation>仅当“%1”为 %2 时</translation>
    </message>
    <message>
        <source>Output profile</source>
        <translation>输出配置文件</translation>
    </message>
    <message>
        <source>PIN for private printing</source>
        <translation>私密打印密码</translation>
    </message>
    <message>
        <source>Page size</source>
        <translation>页面尺寸</translation>
    </message>
    <message>
        <source>Paper and printer</source>
        <translation>纸张和打印机</translation>
    </message>
    <message>
        <source>Paper source</source>
        <translation>纸张来源</translation>
    </message>
    <message>
        <source>Paper source of the back cover</source>
        <translation>封底的纸张来源</translation>
    </message>
    <message>
        <source>Paper source of the front cover</source>
        <translation>封面的纸张来源</translation>
    </message>
    <message>
        <source>Perceptual</source>
        <translation>可感知</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Print mode</source>
        <translation>打印模式</translation>
    </message>
    <message>
        <source>Print when storing in a document box</source>
        <translation>存入文档箱时也打印</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>正在打印</translation>
    </message>
    <message>
        <source>Printing of the back cover</source>
        <translation>封底的打印</translation>
    </message>
    <message>
        <source>Printing of the front cover</source>
        <translation>封面的打印</translation>
    </message>
    <message>
        <source>Private printing and document box</source>
        <translation>私密打印和文档箱</translation>
    </message>
    <message>
        <source>Profile of one's own</source>
        <translation>自定配置文件</translation>
    </message>
    <message>
        <source>RGB source profile</source>
        <translation>RGB 源配置文件</translation>
    </message>
    <message>
        <source>Reads from left to right</source>
        <translation>从左到右阅读</translation>
    </message>
    <message>
        <source>Relative colorimetric</source>
        <translation>相对比色</translation>
    </message>
    <message>
        <source>Rendering intent</source>
        <translation>渲染意图</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>右</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>饱和度</translation>
    </message>
    <message>
        <source>See-through</source>
        <translation>半透明</translation>
    </message>
    <message>
        <source>Sheets folded together, 0 for all</source>
        <translation>一起折叠的纸张数，0 为全部</translation>
    </message>
    <message>
        <source>Size in points</source>
        <translation>大小（点）</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>已停止</translation>
    </message>
    <message>
        <source>Store in a document box</source>
        <translation>存入文档箱</translation>
    </message>
    <message>
        <source>Tabloid</source>
        <translation>Tabloid</translation>
    </message>
    <message>
        <source>The document was not sent: %1</source>
        <translation>文档未发送：%1</translation>
    </message>
    <message>
        <source>The driver of the printer %1 cannot be read: %2</source>
        <translation>无法读取打印机 %1 的驱动程序：%2</translation>
    </message>
    <message>
        <source>The file %1 cannot be read: %2</source>
        <translation>无法读取文件 %1：%2</translation>
    </message>
    <message>
        <source>The printer %1 has another driver now, one without this filter</source>
        <translation>打印机 %1 现在使用不含此过滤器的其他驱动程序</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more</source>
        <translation>打印机 %1 已不存在</translation>
    </message>
    <message>
        <source>The printer has it</source>
        <translation>打印机已收到</translation>
    </message>
    <message>
        <source>The server %1 does not answer</source>
        <translation>服务器 %1 没有响应</translation>
    </message>
    <message>
        <source>The server %1 refuses: %2</source>
        <translation>服务器 %1 拒绝：%2</translation>
    </message>
    <message>
        <source>The server does not know the job any more</source>
        <translation>服务器上已没有此作业</translation>
    </message>
    <message>
        <source>The settings cannot be kept in the file %1: %2. It is as it was</source>
        <translation>无法将设置保存到文件 %1：%2。文件保持原样</translation>
    </message>
    <message>
        <source>The user's domain</source>
        <translation>用户的域</translation>
    </message>
    <message>
        <source>There are no settings of the name %1</source>
        <translation>没有名为 %1 的设置</translation>
    </message>
    <message>
        <source>There are settings of the name %1 already</source>
        <translation>已有名为 %1 的设置</translation>
    </message>
    <message>
        <source>There is no home folder to keep settings in</source>
        <translation>没有可保存设置的主文件夹</translation>
    </message>
    <message>
        <source>There is no such choice</source>
        <translation>没有这个选项</translation>
    </message>
    <message>
        <source>These settings are too long to be kept; a shorter text would do</source>
        <translation>这些设置太长，无法保存；请缩短文字</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; everybody on this computer can read it</source>
        <translation>它们原样存放在文件 %1 中；此计算机上的所有人都能读取</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you and the administrator can read it</source>
        <translation>它们原样存放在文件 %1 中；您和管理员能读取</translation>
    </message>
    <message>
        <source>They lie in the file %1 as they are; you, the administrator and the group %2 can read it</source>
        <translation>它们原样存放在文件 %1 中；您、管理员和组 %2 能读取</translation>
    </message>
    <message>
        <source>Times Bold</source>
        <translation>Times 粗体</translation>
    </message>
    <message>
        <source>Times Roman</source>
        <translation>Times Roman</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>上</translation>
    </message>
    <message>
        <source>Top left</source>
        <translation>左上</translation>
    </message>
    <message>
        <source>Top right</source>
        <translation>右上</translation>
    </message>
    <message>
        <source>Turn landscape pages</source>
        <translation>旋转横向页面</translation>
    </message>
    <message>
        <source>Two-sided</source>
        <translation>双面</translation>
    </message>
    <message>
        <source>US Legal</source>
        <translation>US Legal</translation>
    </message>
    <message>
        <source>US Letter</source>
        <translation>US Letter</translation>
    </message>
    <message>
        <source>User, where it is not you</source>
        <translation>用户（如果不是您）</translation>
    </message>
    <message>
        <source>Waiting</source>
        <translation>等待中</translation>
    </message>
    <message>
        <source>Was not printed</source>
        <translation>未打印</translation>
    </message>
    <message>
        <source>Was set with another program, under a name that this printer's driver has no choice for</source>
        <translation>由其他程序以此打印机驱动程序没有对应选项的名称设置</translation>
    </message>
    <message>
        <source>Watermark</source>
        <translation>水印</translation>
    </message>
    <message>
        <source>Watermark and page</source>
        <translation>水印层次</translation>
    </message>
    <message>
        <source>Who prints</source>
        <translation>谁在打印</translation>
    </message>
    <message>
        <source>With [user], [title], [date], [time], [page], [pages] and [job-id] put in</source>
        <translation>填入 [user]、[title]、[date]、[time]、[page]、[pages] 和 [job-id]</translation>
    </message>
    <message>
        <source>Words in brackets must be [user], [title], [job-id], [date], [time], [page] or [pages]</source>
        <translation>方括号中的词必须是 [user]、[title]、[job-id]、[date]、[time]、[page] 或 [pages]</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>it is too large</source>
        <translation>太大</translation>
    </message>
</context>
</TS>
