<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW" sourcelanguage="zh_CN">
<context>
    <name>AsrLanMenu</name>
    <message>
        <source>普通话(腾讯版)</source>
        <translation>普通話(騰訊版)</translation>
    </message>
    <message>
        <source>粤语(腾讯版)</source>
        <translation>粵語(騰訊版)</translation>
    </message>
    <message>
        <source>普通话+医疗(腾讯版)</source>
        <translation>普通話+醫療(騰訊版)</translation>
    </message>
    <message>
        <source>自识别方言(腾讯版)</source>
        <translation>自辨識方言(騰訊版)</translation>
    </message>
    <message>
        <source>英语(腾讯版)</source>
        <translation>英語(騰訊版)</translation>
    </message>
    <message>
        <source>日语(腾讯版)</source>
        <translation>日語(騰訊版)</translation>
    </message>
    <message>
        <source>普通话(百度版)</source>
        <translation>普通話(百度版)</translation>
    </message>
    <message>
        <source>粤语(百度版)</source>
        <translation>粵語(百度版)</translation>
    </message>
    <message>
        <source>四川话(百度版)</source>
        <translation>四川話(百度版)</translation>
    </message>
    <message>
        <source>英语(百度版)</source>
        <translation>英語(百度版)</translation>
    </message>
    <message>
        <source>普通话(讯飞版)</source>
        <translation>普通話(訊飛版)</translation>
    </message>
    <message>
        <source>英语(讯飞版)</source>
        <translation>英語(訊飛版)</translation>
    </message>
    <message>
        <source>使用讯飞语音输入法</source>
        <translation>使用訊飛語音輸入法</translation>
    </message>
    <message>
        <source>使用搜狗语音输入法</source>
        <translation>使用搜狗語音輸入法</translation>
    </message>
    <message>
        <source>使用自定义语音输入法</source>
        <translation>使用自訂語音輸入法</translation>
    </message>
</context>
<context>
    <name>AudioRecorder</name>
    <message>
        <source>正在使用电脑自带麦克风,如不能正常语音识别,请尝试在设置中选择其它麦克风或启用/禁用立体声混音！</source>
        <translation>正在使用電腦自帶麥克風,如不能正常語音辨識,請嘗試在設定中選擇其它麥克風或啟用/禁用立體聲混音！</translation>
    </message>
    <message>
        <source>打开麦克风设备失败，请查看设备管理器中显示设备是否正常，如是Windows 10系统，请先确认麦克风权限是否已打开!</source>
        <translation>開啟麥克風裝置失敗，請檢視裝置管理器中顯示裝置是否正常，如是Windows 10系統，請先確認麥克風權限是否已開啟!</translation>
    </message>
</context>
<context>
    <name>CPatialResultDialog</name>
    <message>
        <source>识别中的文字</source>
        <translation>辨識中的文字</translation>
    </message>
</context>
<context>
    <name>DeviceCommands</name>
    <message>
        <source>您电脑已连接多个本公司产品，暂不能同时支持，请选择一款，在安装配套软件后使用！</source>
        <translation>您電腦已連接多個本公司產品，暫不能同時支援，請選擇一款，在安裝配套軟體後使用！</translation>
    </message>
    <message>
        <source>请尝试将设备接到到其它USB口再打开软件，如一直显示此信息，请与供货商联系(</source>
        <translation>請嘗試將裝置接到其它USB口再開啟軟體，如一直顯示此資訊，請與供應商聯絡(</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>有文字未能输入，已保留在菜单的“未送达的文字”中。</source>
        <translation>有文字未能輸入，已保留在選單的「未送達的文字」中。</translation>
    </message>
    <message>
        <source>未送达的文字(%1)</source>
        <translation>未送達的文字(%1)</translation>
    </message>
    <message>
        <source>没有可以输入的窗口，请先把光标放到要输入的地方。</source>
        <translation>沒有可以輸入的視窗，請先把游標放到要輸入的地方。</translation>
    </message>
    <message>
        <source>灵犀听写系统.lnk</source>
        <translation>靈犀聽寫系統.lnk</translation>
    </message>
    <message>
        <source>自动启动软件</source>
        <translation>自動啟動軟體</translation>
    </message>
    <message>
        <source>下次开机是否自动启动语音软件?</source>
        <translation>下次開機是否自動啟動語音軟體?</translation>
    </message>
    <message>
        <source>是</source>
        <translation>是</translation>
    </message>
    <message>
        <source>返回</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>否</source>
        <translation>否</translation>
    </message>
    <message>
        <source>未连接外部网络，该功能无法实现！</source>
        <translation>未連線外部網路，該功能無法實現！</translation>
    </message>
    <message>
        <source>未连接外部网络</source>
        <translation>未連線外部網路</translation>
    </message>
    <message>
        <source>错误</source>
        <translation>錯誤</translation>
    </message>
    <message>
        <source>请确认插上设备后再重启运行!</source>
        <translation>請確認插上裝置後再重啟執行!</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>確定</translation>
    </message>
    <message>
        <source>请选择语音识别引擎</source>
        <translation>請選擇語音辨識引擎</translation>
    </message>
    <message>
        <source>正在启动讯飞麦克风窗口，请稍候，检测过程中可关闭其它提示信息窗口！</source>
        <translation>正在啟動訊飛麥克風視窗，請稍候，偵測過程中可關閉其它提示資訊視窗！</translation>
    </message>
    <message>
        <source>正在首次启动讯飞麦克风窗口过程中，识别检测时间稍长，请稍候，检测过程中可忽略提示信息或窗口！</source>
        <translation>正在首次啟動訊飛麥克風視窗過程中，辨識檢測時間稍長，請稍候，檢測過程中可忽略提示資訊或視窗！</translation>
    </message>
    <message>
        <source>已打开语音输入识别功能！</source>
        <translation>已開啟語音輸入辨識功能！</translation>
    </message>
    <message>
        <source>关闭语音输入识别</source>
        <translation>關閉語音輸入辨識</translation>
    </message>
    <message>
        <source>打开语音输入识别</source>
        <translation>開啟語音輸入辨識</translation>
    </message>
    <message>
        <source>3秒后会关闭语音输入识别功能！</source>
        <translation>3秒後會關閉語音輸入辨識功能！</translation>
    </message>
    <message>
        <source>菜单</source>
        <translation>選單</translation>
    </message>
    <message>
        <source>打开的麦克风窗口可设置语音命令或语音搜索的功能;<byte value="xd"/> 当用讯飞语音输入法时，打开的讯飞麦克风窗口可设置方言等功能</source>
        <translation>開啟的麥克風視窗可設定語音命令或語音搜尋的功能;
 當用訊飛語音輸入法時，開啟的訊飛麥克風視窗可設定方言等功能</translation>
    </message>
    <message>
        <source>麦克风</source>
        <translation>麥克風</translation>
    </message>
    <message>
        <source>点击选择语言</source>
        <translation>點選選擇語言</translation>
    </message>
    <message>
        <source>语言</source>
        <translation>語言</translation>
    </message>
    <message>
        <source>点击打开虚拟键盘</source>
        <translation>點選開啟虛擬鍵盤</translation>
    </message>
    <message>
        <source>虚拟键盘</source>
        <translation>虛擬鍵盤</translation>
    </message>
    <message>
        <source>手写</source>
        <translation>手寫</translation>
    </message>
    <message>
        <source>点击打开设置语音命令词</source>
        <translation>點選開啟設定語音命令詞</translation>
    </message>
    <message>
        <source>语音命令词</source>
        <translation>語音命令詞</translation>
    </message>
    <message>
        <source>点击打开翻译窗口</source>
        <translation>點選開啟翻譯視窗</translation>
    </message>
    <message>
        <source>翻译</source>
        <translation>翻譯</translation>
    </message>
    <message>
        <source>点击打开设置窗口</source>
        <translation>點選開啟設定視窗</translation>
    </message>
    <message>
        <source>设置</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>语音输入系统托盘图标</source>
        <translation>語音輸入系統匣圖示</translation>
    </message>
    <message>
        <source>C盘空间太小，如不清理可能影响软件运行！</source>
        <translation>C盤空間太小，如不清理可能影響軟體執行！</translation>
    </message>
    <message>
        <source>隐藏此菜单</source>
        <translation>隱藏此選單</translation>
    </message>
    <message>
        <source>显示水平界面</source>
        <translation>顯示水平介面</translation>
    </message>
    <message>
        <source>显示垂直界面</source>
        <translation>顯示垂直介面</translation>
    </message>
    <message>
        <source>隐藏主界面</source>
        <translation>隱藏主介面</translation>
    </message>
    <message>
        <source>默认窗口显示位置</source>
        <translation>預設視窗顯示位置</translation>
    </message>
    <message>
        <source>关闭语音识别</source>
        <translation>關閉語音辨識</translation>
    </message>
    <message>
        <source>使用说明</source>
        <translation>使用說明</translation>
    </message>
    <message>
        <source>退出软件</source>
        <translation>退出軟體</translation>
    </message>
    <message>
        <source>灵犀听写</source>
        <translation>靈犀聽寫</translation>
    </message>
    <message>
        <source>已连接外部网络！</source>
        <translation>已連線外部網路！</translation>
    </message>
    <message>
        <source>显示界面</source>
        <translation>顯示介面</translation>
    </message>
    <message>
        <source>隐藏界面</source>
        <translation>隱藏介面</translation>
    </message>
    <message>
        <source>语音翻译模式已打开</source>
        <translation>語音翻譯模式已開啟</translation>
    </message>
    <message>
        <source>语音映射词设置</source>
        <translation>語音對映詞設定</translation>
    </message>
    <message>
        <source>初始化数据错误，请升级安装最新版本软件或联系客服解决！</source>
        <translation>初始化資料錯誤，請升級安裝最新版本軟體或聯絡客服解決！</translation>
    </message>
    <message>
        <source>软件已设置成功，将自动退出，请重新启动软件！</source>
        <translation>軟體已設定成功，將自動結束，請重新啟動軟體！</translation>
    </message>
    <message>
        <source>版本更新</source>
        <translation>版本更新</translation>
    </message>
    <message>
        <source>已有最新版本软件，请下载更新到最新版本！</source>
        <translation>已有最新版本軟體，請下載更新到最新版本！</translation>
    </message>
    <message>
        <source>已有最新版本，请下载更新软件后再使用！</source>
        <translation>已有最新版本，請下載更新軟體後再使用！</translation>
    </message>
    <message>
        <source>已超出各接口每天限制使用次数，如继续使用，请选择使用讯飞输入法或搜狗语音输入法(f001)!</source>
        <translation>已超出各介面每天限制使用次數，如繼續使用，請選擇使用訊飛輸入法或搜狗語音輸入法(f001)!</translation>
    </message>
    <message>
        <source>已超出各接口每天限制使用次数,请24小时后再使用(f001)！</source>
        <translation>已超出各介面每天限制使用次數,請24小時後再使用(f001)！</translation>
    </message>
    <message>
        <source>超出限量</source>
        <translation>超出限量</translation>
    </message>
    <message>
        <source>使用讯飞语音输入法</source>
        <translation>使用訊飛語音輸入法</translation>
    </message>
    <message>
        <source>使用搜狗语音输入法</source>
        <translation>使用搜狗語音輸入法</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>立即更新</source>
        <translation>立即更新</translation>
    </message>
    <message>
        <source>暂时不更新</source>
        <translation>暫時不更新</translation>
    </message>
    <message>
        <source>灵犀听写更新</source>
        <translation>靈犀聽寫更新</translation>
    </message>
    <message>
        <source>新版本软件已提供，点击此处可以在线更新</source>
        <translation>新版本軟體已提供，點擊此處可以線上更新</translation>
    </message>
    <message>
        <source>无法连接更新服务器，请稍后再试！</source>
        <translation>無法連線更新伺服器，請稍後再試！</translation>
    </message>
    <message>
        <source>灵犀听写提示!</source>
        <translation>靈犀聽寫提示!</translation>
    </message>
    <message>
        <source>确认要取消下载？</source>
        <translation>確認要取消下載？</translation>
    </message>
    <message>
        <source>提示!</source>
        <translation>提示!</translation>
    </message>
    <message>
        <source>请通过系统的软件管理器更新本软件。</source>
        <translation>請透過系統的軟體管理員更新本軟體。</translation>
    </message>
    <message>
        <source>更新程序没有安装，请从下载页面获取新版本。</source>
        <translation>更新程式沒有安裝，請從下載頁面取得新版本。</translation>
    </message>
    <message>
        <source>（未安装）</source>
        <translation>（未安裝）</translation>
    </message>
    <message>
        <source>下载</source>
        <translation>下載</translation>
    </message>
    <message>
        <source>正在下载 %1 过程中，请稍候......</source>
        <translation>正在下載 %1 過程中，請稍候......</translation>
    </message>
    <message>
        <source>取消下载</source>
        <translation>取消下載</translation>
    </message>
    <message>
        <source>Attention!</source>
        <translation>注意！</translation>
    </message>
    <message>
        <source>将安装讯飞输入法，需手动点击，安装完可能会提示需要重启电脑！</source>
        <translation>將安裝訊飛輸入法，需手動點擊，安裝完可能會提示需要重啟電腦！</translation>
    </message>
    <message>
        <source>没有安装，因没有设置强制使用该语音输入，将自动切换到其它语音识别接口！</source>
        <translation>沒有安裝，因沒有設定強制使用該語音輸入，將自動切換到其它語音識別接口！</translation>
    </message>
    <message>
        <source>%1没有安装，服务器也没有提供下载地址。请自行安装，或在设置中指定其程序路径！</source>
        <translation>%1沒有安裝，伺服器也沒有提供下載位址。請自行安裝，或在設定中指定其程式路徑！</translation>
    </message>
    <message>
        <source>没有找到自定义语音输入法的程序 %1，请在设置中重新选择！</source>
        <translation>沒有找到自訂語音輸入法的程式 %1，請在設定中重新選擇！</translation>
    </message>
    <message>
        <source>没有找到搜狗语音输入法的程序，也无法连接服务器下载。请安装后再选择，或在设置中指定其程序路径！</source>
        <translation>沒有找到搜狗語音輸入法的程式，也無法連接伺服器下載。請安裝後再選擇，或在設定中指定其程式路徑！</translation>
    </message>
    <message>
        <source>没有找到讯飞语音输入法的程序，也无法连接服务器下载。请安装后再选择，或在设置中指定其程序路径！</source>
        <translation>沒有找到訊飛語音輸入法的程式，也無法連接伺服器下載。請安裝後再選擇，或在設定中指定其程式路徑！</translation>
    </message>
    <message>
        <source>启动第三方语音输入</source>
        <translation>啟動第三方語音輸入</translation>
    </message>
    <message>
        <source>同意：允许自动调用第三方语音输入法，包括自动下载与安装，以及修改其快捷键设置；
不同意：只在点击麦克风按钮时才启动第三方语音输入法，不修改其设置。</source>
        <translation>同意：允許自動調用第三方語音輸入法，包括自動下載與安裝，以及修改其快捷鍵設定；
不同意：只在點擊麥克風按鈕時才啟動第三方語音輸入法，不修改其設定。</translation>
    </message>
    <message>
        <source>同意</source>
        <translation>同意</translation>
    </message>
    <message>
        <source>不同意</source>
        <translation>不同意</translation>
    </message>
    <message>
        <source>提示</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>点击&apos;下载&apos;按钮将安装</source>
        <translation>點擊&apos;下載&apos;按鈕將安裝</translation>
    </message>
    <message>
        <source>(支持离线语音识别),安装时请按提示操作！</source>
        <translation>(支援離線語音識別),安裝時請按提示操作！</translation>
    </message>
    <message>
        <source>,安装时请按提示操作！</source>
        <translation>,安裝時請按提示操作！</translation>
    </message>
    <message>
        <source>暂不下载</source>
        <translation>暫不下載</translation>
    </message>
    <message>
        <source>讯飞输入法</source>
        <translation>訊飛輸入法</translation>
    </message>
    <message>
        <source>必须重启电脑才能正常使用讯飞输入法！</source>
        <translation>必須重啟電腦才能正常使用訊飛輸入法！</translation>
    </message>
    <message>
        <source>立即重启</source>
        <translation>立即重啟</translation>
    </message>
    <message>
        <source>稍后重启</source>
        <translation>稍後重啟</translation>
    </message>
    <message>
        <source>初始化软件成功，如有问题，请尝试重新打开软件！</source>
        <translation>初始化軟體成功，如有問題，請嘗試重新打開軟體！</translation>
    </message>
    <message>
        <source>请重新安装语音手写板软件<byte value="xd"/>或点击查看如何设置（点击快捷键设置-&gt;常规功能键-&gt;打勾启用语音输入快捷键，并设为F6）</source>
        <translation>請重新安裝語音手寫板軟體<byte value="xd"/>或點擊查看如何設定（點擊快捷鍵設定-&gt;常規功能鍵-&gt;打勾啟用語音輸入快捷鍵，並設為F6）</translation>
    </message>
    <message>
        <source>查看如何设置</source>
        <translation>查看如何設定</translation>
    </message>
    <message>
        <source>打开设置窗口</source>
        <translation>打開設定視窗</translation>
    </message>
    <message>
        <source>以后再设置</source>
        <translation>以後再設定</translation>
    </message>
    <message>
        <source>重启电脑该功能才生效;	
取消：点击此按钮，将退出并保持以前配置</source>
        <translation>重啟電腦該功能才生效;	
取消：點擊此按鈕，將退出並保持以前配置</translation>
    </message>
    <message>
        <source>自动重启电脑</source>
        <translation>自動重啟電腦</translation>
    </message>
    <message>
        <source>手动重启电脑</source>
        <translation>手動重啟電腦</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>无法修改讯飞输入法的配置：%1</source>
        <translation>無法修改訊飛輸入法的配置：%1</translation>
    </message>
    <message>
        <source>没有找到讯飞输入法的程序 %1！</source>
        <translation>沒有找到訊飛輸入法的程式 %1！</translation>
    </message>
</context>
<context>
    <name>MicTipDialog</name>
    <message>
        <source>语音打字模式已打开</source>
        <translation>語音打字模式已開啟</translation>
    </message>
    <message>
        <source>点击进入语音打字模式</source>
        <translation>點選進入語音打字模式</translation>
    </message>
    <message>
        <source>语音命令词模式已打开</source>
        <translation>語音命令詞模式已開啟</translation>
    </message>
    <message>
        <source>点击进入语音命令词模式</source>
        <translation>點選進入語音命令詞模式</translation>
    </message>
    <message>
        <source>语音搜索模式已打开</source>
        <translation>語音搜尋模式已開啟</translation>
    </message>
    <message>
        <source>点击进入语音搜素模式</source>
        <translation>點選進入語音搜尋模式</translation>
    </message>
    <message>
        <source>麦克风</source>
        <translation>麥克風</translation>
    </message>
</context>
<context>
    <name>MouseSettings</name>
    <message>
        <source>读取DongleID时没有发现设备!</source>
        <translation>讀取DongleID時沒有發現裝置!</translation>
    </message>
    <message>
        <source>麦克风</source>
        <translation>麥克風</translation>
    </message>
    <message>
        <source>麦克风(F6)</source>
        <translation>麥克風(F6)</translation>
    </message>
    <message>
        <source>语音打字</source>
        <translation>語音打字</translation>
    </message>
    <message>
        <source>语音搜索</source>
        <translation>語音搜尋</translation>
    </message>
    <message>
        <source>语音命令</source>
        <translation>語音命令</translation>
    </message>
    <message>
        <source>语音翻译</source>
        <translation>語音翻譯</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>刪除</translation>
    </message>
    <message>
        <source>回桌面</source>
        <translation>回桌面</translation>
    </message>
    <message>
        <source>前进</source>
        <translation>前進</translation>
    </message>
    <message>
        <source>后退</source>
        <translation>後退</translation>
    </message>
    <message>
        <source>长按中键上滚</source>
        <translation>長按中鍵上滾</translation>
    </message>
    <message>
        <source>长按中键下滚</source>
        <translation>長按中鍵下滾</translation>
    </message>
</context>
<context>
    <name>Notifications</name>
    <message>
        <source>灵犀听写</source>
        <translation>靈犀聽寫</translation>
    </message>
</context>
<context>
    <name>QToolTips</name>
    <message>
        <source>灵犀听写提示窗</source>
        <translation>靈犀聽寫提示窗</translation>
    </message>
</context>
<context>
    <name>Relay_Speech::BaiduSpeech</name>
    <message>
        <source>
 (错误码:3301)语音质量可能过差，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系！ (错误码:3301)


提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
 (錯誤碼:3301)語音質量可能過差，確認預設麥克風裝置是否正確，請嘗試啟動立體聲混音後再開啟軟體，如仍提示此錯誤，建議更換一臺電腦測試，如存在一樣問題，請與售後人員聯絡！ (錯誤碼:3301)


提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
    <message>
        <source>
 (错误码:3314)语音长度太短, 下次语音识别将切换语音通道，如仍不行，先确认系统是否允许打开麦克风，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系！


提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
 (錯誤碼:3314)語音長度太短, 下次語音辨識將切換語音通道，如仍不行，先確認系統是否允許開啟麥克風，確認預設麥克風裝置是否正確，請嘗試啟動立體聲混音後再開啟軟體，如仍提示此錯誤，建議更換一臺電腦測試，如存在一樣問題，請與售後人員聯絡！


提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
    <message>
        <source>(错误码:3304)请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>(錯誤碼:3304)請手動切換到訊飛語音輸入法或搜狗語音輸入法或與產品供應商聯絡！







提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
    <message>
        <source> (错误码:3304)将切换到讯飞接口，如还有问题，请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation> (錯誤碼:3304)將切換到訊飛介面，如還有問題，請手動切換到訊飛語音輸入法或搜狗語音輸入法或與產品供應商聯絡！







提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
    <message>
        <source>
(错误码:3307) 语音质量可能过差，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
(錯誤碼:3307) 語音質量可能過差，確認預設麥克風裝置是否正確，請嘗試啟動立體聲混音後再開啟軟體，如仍提示此錯誤，建議更換一臺電腦測試，如存在一樣問題，請與售後人員聯絡







提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
    <message>
        <source> (错误码:3305)如连接提示此窗口，请手动切换讯飞语音输入法或搜狗语音输入法或与产品供应商联系！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation> (錯誤碼:3305)如連線提示此視窗，請手動切換訊飛語音輸入法或搜狗語音輸入法或與產品供應商聯絡！







提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
    <message>
        <source>将切换到讯飞接口，如有问题，请手动切换讯飞或搜狗语音输入法或与产品供应商联系！ (错误码:3305)







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>將切換到訊飛介面，如有問題，請手動切換訊飛或搜狗語音輸入法或與產品供應商聯絡！ (錯誤碼:3305)







提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
    <message>
        <source>
   如连续多次提示此窗口，建议尝试手动切换其它识别接口！







提示：
鼠标光标移动到此窗口中，将不会自动隐藏该窗口</source>
        <translation>
   如連續多次提示此視窗，建議嘗試手動切換其它辨識介面！







提示：
滑鼠游標移動到此視窗中，將不會自動隱藏該視窗</translation>
    </message>
</context>
<context>
    <name>Session</name>
    <message>
        <source>当天语音使用识别量已超限! 如当天继续使用，建议切到讯飞语音输入法或搜狗语音输入法</source>
        <translation>當天語音使用辨識量已超限! 如當天繼續使用，建議切到訊飛語音輸入法或搜狗語音輸入法</translation>
    </message>
</context>
<context>
    <name>TencentReply</name>
    <message>
        <source>腾讯语音识别错误返回信息：(如无法解决，请与供货商联系，鼠标放在此窗口上，该窗口不会消失):
</source>
        <translation>騰訊語音辨識錯誤返回資訊：(如無法解決，請與供應商聯絡，滑鼠放在此視窗上，該視窗不會消失):
</translation>
    </message>
</context>
<context>
    <name>XunFeiLanguages</name>
    <message>
        <source>长沙话</source>
        <translation>長沙話</translation>
    </message>
    <message>
        <source>东北话</source>
        <translation>東北話</translation>
    </message>
    <message>
        <source>甘肃话</source>
        <translation>甘肅話</translation>
    </message>
    <message>
        <source>广东话</source>
        <translation>廣東話</translation>
    </message>
    <message>
        <source>杭州话</source>
        <translation>杭州話</translation>
    </message>
    <message>
        <source>河北话</source>
        <translation>河北話</translation>
    </message>
    <message>
        <source>合肥话</source>
        <translation>合肥話</translation>
    </message>
    <message>
        <source>河南话</source>
        <translation>河南話</translation>
    </message>
    <message>
        <source>客家话</source>
        <translation>客家話</translation>
    </message>
    <message>
        <source>闽南话</source>
        <translation>閩南話</translation>
    </message>
    <message>
        <source>南昌话</source>
        <translation>南昌話</translation>
    </message>
    <message>
        <source>南京话</source>
        <translation>南京話</translation>
    </message>
    <message>
        <source>山东话</source>
        <translation>山東話</translation>
    </message>
    <message>
        <source>上海话</source>
        <translation>上海話</translation>
    </message>
    <message>
        <source>陕西话</source>
        <translation>陝西話</translation>
    </message>
    <message>
        <source>四川话</source>
        <translation>四川話</translation>
    </message>
    <message>
        <source>台湾话</source>
        <translation>臺灣話</translation>
    </message>
    <message>
        <source>太原话</source>
        <translation>太原話</translation>
    </message>
    <message>
        <source>天津话</source>
        <translation>天津話</translation>
    </message>
    <message>
        <source>武汉话</source>
        <translation>武漢話</translation>
    </message>
    <message>
        <source>云南话</source>
        <translation>雲南話</translation>
    </message>
    <message>
        <source>宁夏话</source>
        <translation>寧夏話</translation>
    </message>
    <message>
        <source>贵州话</source>
        <translation>貴州話</translation>
    </message>
    <message>
        <source>皖北话</source>
        <translation>皖北話</translation>
    </message>
    <message>
        <source>普通话</source>
        <translation>普通話</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>英語</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>日語</translation>
    </message>
    <message>
        <source>韩语</source>
        <translation>韓語</translation>
    </message>
    <message>
        <source>俄语</source>
        <translation>俄語</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>法語</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>西班牙語</translation>
    </message>
</context>
<context>
    <name>mevo::SessionMachine</name>
    <message>
        <source>已关闭语音识别功能！</source>
        <translation>已關閉語音辨識功能！</translation>
    </message>
    <message>
        <source>松开按键太快！请长按松开后再正式语音输入！</source>
        <translation>鬆開按鍵太快！請長按鬆開後再正式語音輸入！</translation>
    </message>
</context>
<context>
    <name>UndeliveredDialog</name>
    <message>
        <source>未送达的文字</source>
        <translation>未送達的文字</translation>
    </message>
    <message>
        <source>选中一条，再把光标放到要输入的窗口，然后点“输入”。</source>
        <translation>選取一條，再把游標放到要輸入的視窗，然後點「輸入」。</translation>
    </message>
    <message>
        <source>输入</source>
        <translation>輸入</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>複製</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>刪除</translation>
    </message>
    <message>
        <source>全部删除</source>
        <translation>全部刪除</translation>
    </message>
</context>
<context>
    <name>CADShowDlg</name>
    <message>
        <source>灵犀听写信息提示框</source>
        <translation>靈犀聽寫資訊提示框</translation>
    </message>
    <message>
        <source>您有一条新消息，点击查看：</source>
        <translation>您有一則新訊息，點擊檢視：</translation>
    </message>
</context>
<context>
    <name>MyUpdateChecker</name>
    <message>
        <source>文件已存在</source>
        <translation>檔案已存在</translation>
    </message>
    <message>
        <source>不能保存文件 %1: %2.</source>
        <translation>不能保存檔案 %1: %2.</translation>
    </message>
    <message>
        <source>文件太大</source>
        <translation>檔案太大</translation>
    </message>
    <message>
        <source>文件  %1 不存在.</source>
        <translation>檔案  %1 不存在.</translation>
    </message>
    <message>
        <source>下载错误: %1.</source>
        <translation>下載錯誤: %1.</translation>
    </message>
    <message>
        <source>校验和不符</source>
        <translation>校驗和不符</translation>
    </message>
    <message>
        <source>更新文件没有有效的数字签名，已拒绝安装。</source>
        <translation>更新檔案沒有有效的數位簽章，已拒絕安裝。</translation>
    </message>
    <message>
        <source>V%d.%02d完整安装版已提供，须在线更新！<byte value="xd"/>
请点击&apos;立即更新&apos;按钮</source>
        <translation>V%d.%02d完整安裝版本已提供，須在線更新！<byte value="xd"/>
請點擊&apos;立即更新&apos;按鈕</translation>
    </message>
    <message>
        <source>V%d.%02d完整安装版已提供在线更新！<byte value="xd"/>
是否要更新?</source>
        <translation>V%d.%02d完整安裝版本已提供在線更新！<byte value="xd"/>
是否要更新？</translation>
    </message>
    <message>
        <source>V%d.%02d版本已提供，须在线更新,<byte value="xd"/>
请点击&apos;立即更新&apos;按钮</source>
        <translation>V%d.%02d版本已提供，須在線更新！<byte value="xd"/>
請點擊&apos;立即更新&apos;按鈕</translation>
    </message>
    <message>
        <source>V%d.%02d版本已提供在线更新,<byte value="xd"/>
是否要更新?</source>
        <translation>V%d.%02d版本已提供在線更新,<byte value="xd"/>
是否要更新？</translation>
    </message>
    <message>
        <source>（更新文件没有数字签名，无法验证其来源。）</source>
        <translation>（更新檔案沒有數位簽章，無法驗證其來源。）</translation>
    </message>
</context>
<context>
    <name>UpdateProgressDialog</name>
    <message>
        <source>灵犀听写在线更新</source>
        <translation>靈犀聽寫線上更新</translation>
    </message>
    <message>
        <source>取消下载</source>
        <translation>取消下載</translation>
    </message>
    <message>
        <source><byte value="xd"/>
               正在下载更新文件:%1,请稍候......               <byte value="xd"/></source>
        <translation><byte value="xd"/>
               正在下載更新檔案:%1,請稍候......               <byte value="xd"/></translation>
    </message>
</context>
<context>
    <name>ThirdPartyVoiceInput</name>
    <message>
        <source>Impossible to save the file %1: %2.</source>
        <translation>無法儲存檔案 %1: %2.</translation>
    </message>
    <message>
        <source>File %1 is not present.</source>
        <translation>檔案 %1 不存在.</translation>
    </message>
    <message>
        <source>Download failed: %1.</source>
        <translation>下載失敗: %1.</translation>
    </message>
    <message>
        <source>文件已存在</source>
        <translation>檔案已存在</translation>
    </message>
    <message>
        <source>文件太大</source>
        <translation>檔案太大</translation>
    </message>
</context>
</TS>
