<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>FieldEditor</name>
    <message>
        <source>Show what is typed</source>
        <translation>显示输入的内容</translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation>选择颜色</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>选择…</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>选择文件</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>其他…</translation>
    </message>
</context>
<context>
    <name>JobsView</name>
    <message>
        <source>Jobs printed from here</source>
        <translation>从此处打印的作业</translation>
    </message>
    <message>
        <source>Cancel Job</source>
        <translation>取消作业</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>%1 (job %2 on %3): %4</source>
        <translation>%1（%3 上的作业 %2）：%4</translation>
    </message>
</context>
<context>
    <name>KeepDialog</name>
    <message>
        <source>As my &amp;defaults for %1</source>
        <translation>作为我在 %1 上的默认设置(&amp;D)</translation>
    </message>
    <message>
        <source>As a set with a &amp;name, which print dialogs list:</source>
        <translation>作为打印对话框会列出的命名设置(&amp;N)：</translation>
    </message>
    <message>
        <source>Keep &amp;PIN and passwords, too</source>
        <translation>同时保存 PIN 和其他密码(&amp;P)</translation>
    </message>
    <message>
        <source>Keep Settings</source>
        <translation>保存设置</translation>
    </message>
    <message>
        <source>Name of the set</source>
        <translation>设置名称</translation>
    </message>
    <message>
        <source>confidential</source>
        <comment>an example of a name</comment>
        <translation>confidential</translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation>保存(&amp;K)</translation>
    </message>
</context>
<context>
    <name>Keeping</name>
    <message>
        <source>Kept as your defaults for %1.</source>
        <translation>已保存为您在 %1 上的默认设置。</translation>
    </message>
    <message>
        <source>Kept as %1/%2.</source>
        <translation>已保存为 %1/%2。</translation>
    </message>
    <message>
        <source>Rename Set</source>
        <translation>重命名设置</translation>
    </message>
    <message>
        <source>New name of %1:</source>
        <translation>%1 的新名称：</translation>
    </message>
    <message>
        <source>%1 is now %2.</source>
        <translation>%1 现在名为 %2。</translation>
    </message>
    <message>
        <source>Remove your defaults for %1?</source>
        <translation>要删除您在 %1 上的默认设置吗？</translation>
    </message>
    <message>
        <source>Remove the set %1?</source>
        <translation>要删除设置 %1 吗？</translation>
    </message>
    <message>
        <source>Remove Set</source>
        <translation>删除设置</translation>
    </message>
    <message>
        <source>Removed. The settings stay as they are on the screen.</source>
        <translation>已删除。屏幕上的设置保持不变。</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Print Settings</source>
        <translation>打印设置</translation>
    </message>
    <message>
        <source>Looking for printers …</source>
        <translation>正在查找打印机…</translation>
    </message>
    <message>
        <source>&amp;Keep…</source>
        <translation>保存(&amp;K)…</translation>
    </message>
    <message>
        <source>Cop&amp;y as Command</source>
        <translation>复制为命令(&amp;Y)</translation>
    </message>
    <message>
        <source>&amp;Print Now</source>
        <translation>立即打印(&amp;P)</translation>
    </message>
    <message>
        <source>The printer %1 is not there any more. What you have set for it stays as long as this window is open.</source>
        <translation>打印机 %1 已不存在。您为它所做的设置在此窗口打开期间会保留。</translation>
    </message>
    <message>
        <source>There is no printer here that is driven by jobfilter.</source>
        <translation>这里没有由 jobfilter 驱动的打印机。</translation>
    </message>
    <message>
        <source>(Printers of other kinds that are there: %L1)</source>
        <translation>（其他种类的打印机：%L1）</translation>
    </message>
    <message>
        <source>Ask the administrator of your printers for a queue with its driver, or add one:</source>
        <translation>请向打印机管理员索取使用此驱动程序的队列，或自行添加：</translation>
    </message>
    <message>
        <source>There is no printer %1 that is driven by jobfilter.</source>
        <translation>没有由 jobfilter 驱动的打印机 %1。</translation>
    </message>
    <message>
        <source>There is no set %1 for this printer.</source>
        <translation>此打印机没有名为 %1 的设置。</translation>
    </message>
    <message>
        <source>This printer was changed on its server. What you had set was taken over.</source>
        <translation>此打印机已在其服务器上更改。您的设置已沿用。</translation>
    </message>
    <message>
        <source>Open a document first</source>
        <translation>请先打开文档</translation>
    </message>
    <message>
        <source>Open Document</source>
        <translation>打开文档</translation>
    </message>
    <message>
        <source>PDF documents (*.pdf);;All files (*)</source>
        <translation>PDF 文档 (*.pdf);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Copy as Command</source>
        <translation>复制为命令</translation>
    </message>
    <message>
        <source>Put the PIN and passwords into the command? Whoever sees the command can read them.</source>
        <translation>要把 PIN 和其他密码放入命令吗？看到命令的人都能读到它们。</translation>
    </message>
    <message>
        <source>The command is on the clipboard.</source>
        <translation>命令已复制到剪贴板。</translation>
    </message>
    <message>
        <source>Reading the driver of %1 …</source>
        <translation>正在读取 %1 的驱动程序…</translation>
    </message>
    <message>
        <source>They count for every printer of the name %1, whatever server it is on.</source>
        <translation>这些设置适用于所有名为 %1 的打印机，无论它在哪个服务器上。</translation>
    </message>
</context>
<context>
    <name>Preview</name>
    <message>
        <source>Preparing the pages</source>
        <translation>正在准备页面</translation>
    </message>
    <message>
        <source>Unable to apply watermark</source>
        <translation>无法添加水印</translation>
    </message>
    <message>
        <source>Unable to apply booklet mode</source>
        <translation>无法制作小册子</translation>
    </message>
    <message>
        <source>Unable to apply cover pages</source>
        <translation>无法添加封面</translation>
    </message>
    <message>
        <source>The document cannot be read: %1</source>
        <translation>无法读取文档：%1</translation>
    </message>
    <message>
        <source>The document is empty.</source>
        <translation>文档是空的。</translation>
    </message>
    <message>
        <source>The document is not a PDF.</source>
        <translation>文档不是 PDF。</translation>
    </message>
    <message>
        <source>The document is damaged.</source>
        <translation>文档已损坏。</translation>
    </message>
    <message>
        <source>The document can only be opened with its password.</source>
        <translation>文档需要密码才能打开。</translation>
    </message>
    <message>
        <source>The document has too many pages for a preview.</source>
        <translation>文档页数太多，无法预览。</translation>
    </message>
    <message>
        <source>The queue&apos;s printer description cannot be read: %1</source>
        <translation>无法读取队列的打印机描述：%1</translation>
    </message>
    <message>
        <source>The toolkit is not installed as it should be: %1</source>
        <translation>工具包没有正确安装：%1</translation>
    </message>
    <message>
        <source>There is no place for temporary files: %1</source>
        <translation>没有存放临时文件的位置：%1</translation>
    </message>
    <message>
        <source>The page cannot be drawn.</source>
        <translation>无法绘制页面。</translation>
    </message>
    <message>
        <source>The preview&apos;s program cannot be started: %1</source>
        <translation>无法启动预览程序：%1</translation>
    </message>
    <message>
        <source>The document takes too much memory for a preview.</source>
        <translation>预览此文档需要的内存太多。</translation>
    </message>
    <message>
        <source>The document takes too long for a preview.</source>
        <translation>预览此文档需要的时间太长。</translation>
    </message>
    <message>
        <source>The preview&apos;s program has ended unexpectedly (%1).</source>
        <translation>预览程序意外结束（%1）。</translation>
    </message>
    <message>
        <source>There is no preview: %1</source>
        <translation>没有预览：%1</translation>
    </message>
    <message>
        <source>The covers are printed on the paper of the job: a PDF cannot choose trays.</source>
        <translation>封面使用作业的纸张打印：PDF 无法选择纸盒。</translation>
    </message>
    <message>
        <source>This queue names no toolkit: it prints without watermark, booklet and covers.</source>
        <translation>此队列没有指定工具包：打印时没有水印、小册子和封面。</translation>
    </message>
    <message>
        <source>Preparing the pages, step %L1</source>
        <translation>正在准备页面，第 %L1 步</translation>
    </message>
</context>
<context>
    <name>PreviewPane</name>
    <message>
        <source>&amp;Open Document…</source>
        <translation>打开文档(&amp;O)…</translation>
    </message>
    <message>
        <source>Previous sheet</source>
        <translation>上一张</translation>
    </message>
    <message>
        <source>Next sheet</source>
        <translation>下一张</translation>
    </message>
    <message>
        <source>Sheet in view</source>
        <translation>当前纸张</translation>
    </message>
    <message>
        <source>&amp;Turn Over</source>
        <translation>翻面(&amp;T)</translation>
    </message>
    <message>
        <source>Sheet</source>
        <comment>before the number of one</comment>
        <translation>第</translation>
    </message>
    <message>
        <source>Stopped. The next change begins anew.</source>
        <translation>已停止。下次更改时重新开始。</translation>
    </message>
    <message>
        <source>A sample document</source>
        <translation>示例文档</translation>
    </message>
    <message>
        <source>of %L1</source>
        <comment>after the number of a sheet</comment>
        <translation>张，共 %L1 张</translation>
    </message>
    <message>
        <source>Front cover, front</source>
        <translation>封面，正面</translation>
    </message>
    <message>
        <source>Front cover, back</source>
        <translation>封面，背面</translation>
    </message>
    <message>
        <source>Back cover, front</source>
        <translation>封底，正面</translation>
    </message>
    <message>
        <source>Back cover, back</source>
        <translation>封底，背面</translation>
    </message>
    <message>
        <source>Sheet %L1, front</source>
        <translation>第 %L1 张，正面</translation>
    </message>
    <message>
        <source>Sheet %L1, back</source>
        <translation>第 %L1 张，背面</translation>
    </message>
    <message>
        <source> · from %1</source>
        <comment>a tray</comment>
        <translation> · 来自 %1</translation>
    </message>
    <message>
        <source> · on %1</source>
        <comment>a kind of paper</comment>
        <translation> · %1</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>停止(&amp;S)</translation>
    </message>
</context>
<context>
    <name>PrinterRow</name>
    <message>
        <source>Ready</source>
        <translation>就绪</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>正在打印</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>已停止</translation>
    </message>
    <message>
        <source>takes no jobs</source>
        <translation>不接受作业</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>打印机</translation>
    </message>
    <message>
        <source>Settings to begin with</source>
        <translation>起始设置</translation>
    </message>
    <message>
        <source>&amp;Rename This Set…</source>
        <translation>重命名此设置(&amp;R)…</translation>
    </message>
    <message>
        <source>Re&amp;move This Set…</source>
        <translation>删除此设置(&amp;M)…</translation>
    </message>
    <message>
        <source>Look for Printers A&amp;gain</source>
        <translation>重新查找打印机(&amp;G)</translation>
    </message>
    <message>
        <source>More</source>
        <translation>更多</translation>
    </message>
    <message>
        <source>P&amp;rinter:</source>
        <translation>打印机(&amp;R)：</translation>
    </message>
    <message>
        <source>Be&amp;gin with:</source>
        <translation>起始设置(&amp;G)：</translation>
    </message>
    <message>
        <source>The printer&apos;s own settings</source>
        <translation>打印机自身的设置</translation>
    </message>
    <message>
        <source>My defaults</source>
        <translation>我的默认设置</translation>
    </message>
</context>
<context>
    <name>SettingsPages</name>
    <message>
        <source>Pages of settings</source>
        <translation>设置页</translation>
    </message>
    <message>
        <source>Something here needs mending</source>
        <translation>此处有需要更正的内容</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Sets what a printer driven by jobfilter can do, and shows the pages as they will come out.</source>
        <translation>设置由 jobfilter 驱动的打印机的功能，并显示打印出来的页面。</translation>
    </message>
    <message>
        <source>The printer to begin with, and a set of settings kept for it.</source>
        <translation>起始的打印机，以及为它保存的一组设置。</translation>
    </message>
    <message>
        <source>PRINTER[/SET]</source>
        <translation>打印机[/设置]</translation>
    </message>
    <message>
        <source>A PDF file.</source>
        <translation>一个 PDF 文件。</translation>
    </message>
</context>
<context>
    <name>words</name>
    <message>
        <source>this computer</source>
        <translation>本机</translation>
    </message>
</context>
</TS>
